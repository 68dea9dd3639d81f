#include "wizards/backup/storageclassinfo.h"

#include <QCoreApplication>

namespace NVB::GUI::StorageClassInfo {

namespace {

using Info = NVB::Info::Plan::BackupStorageInfo;

QString tr(const char* text)
{
    return QCoreApplication::translate("NVB::GUI::StorageClassInfo", text);
}

QString threeItems(const QString& name, const QString& text, const QString& a, const QString& b, const QString& c)
{
    return QStringLiteral("<p><b>%1</b> %2</p><ul><li>%3</li><li>%4</li><li>%5</li></ul>").arg(name, text, a, b, c);
}

QString twoItems(const QString& name, const QString& text, const QString& a, const QString& b)
{
    return QStringLiteral("<p><b>%1</b> %2</p><ul><li>%3</li><li>%4</li></ul>").arg(name, text, a, b);
}

} // namespace

QString AmazonS3::toolTip(AmazonS3StorageClass storageClass)
{
    switch (storageClass) {
    case Info::Standard:
        return threeItems(tr("S3 Standard"),
            tr("offers high durability, availability, and performance object storage for frequently accessed data."),
            tr("Low latency and high throughput performance"),
            tr("Designed for durability of 99.999999999% of objects across multiple Availability Zones"),
            tr("Designed for 99.99% availability over a given year"));
    case Info::StandardIA:
        return threeItems(tr("S3 Standard-IA"),
            tr(" is a storage class for data that is accessed less frequently, but requires rapid access when needed."),
            tr("Same low latency and high throughput performance of S3 Standard"),
            tr("Designed for durability of 99.999999999% of objects across multiple Availability Zones"),
            tr("Designed for 99.9% availability over a given year"));
    case Info::OneZoneIA:
        return threeItems(tr("S3 One Zone-Infrequent Access"),
            tr("stores data in a single Availability Zone (AZ) and costs less than S3 Standard-IA."),
            tr("Same low latency and high throughput performance of S3 Standard"),
            tr("Designed for durability of 99.999999999% of objects in a single Availability Zone"),
            tr("Designed for 99.5% availability over a given year"));
    case Info::IntelligentTiering:
        return threeItems(tr("S3 Intelligent-Tiering"),
            tr("storage class is designed to optimize costs by automatically moving data to the most cost-effective "
               "access tier."),
            tr("Same low latency and high throughput performance of S3 Standard"),
            tr("Designed for durability of 99.999999999% of objects across multiple Availability Zones"),
            tr("Designed for 99.9% availability over a given year"));
    case Info::GlacierFlexibleRetrieval:
        return threeItems(tr("S3 Glacier"), tr("is a secure, durable, and low-cost storage class for data archiving."),
            tr("Low-cost design is ideal for long-term archive"),
            tr("Configurable retrieval times, from minutes to hours"),
            tr("Designed for durability of 99.999999999% of objects across multiple Availability Zones"));
    case Info::GlacierDeepArchive:
        return threeItems(tr("S3 Glacier Deep Archive"),
            tr("is Amazon S3’s lowest-cost storage class and supports long-term retention and digital preservation."),
            tr("Designed for durability of 99.999999999% of objects across multiple Availability Zones"),
            tr("Lowest cost storage class designed for long-term retention of data that will be retained for 7-10 "
               "years"),
            tr("Retrieval time within 12 hours"));
    default:
        return QString();
    }
}

QString Azure::toolTip(AzureBlobStorageClass storageClass)
{
    switch (storageClass) {
    case Info::Default:
        return QStringLiteral("<p><b>%1</b> %2</p>")
                   .arg(tr("Default"),
                       tr("- with this setting the data will be sent to the storage and stored according to the "
                          "container tier setting, if none is configured the data will be stored in Hot storage "
                          "tier."))
            + twoItems(tr("Hot"), tr("storage tier is optimized for storing data that is accessed frequently."),
                tr("Data that is in active use or expected to be accessed frequently"),
                tr("Data that is staged for processing and eventual migration to the cool tier"));
    case Info::Cool:
        return threeItems(tr("Cool"),
            tr("storage tier has lower storage costs and higher access costs compared to hot storage."),
            tr("Short-term backup and disaster recovery datasets"),
            tr("Older media content not viewed frequently anymore but expected to be available immediately"),
            tr("Data stored for at least 30 days"));
    case Info::Archive:
        return threeItems(tr("Archive"),
            tr("storage has the lowest storage cost and higher data retrieval costs compared to hot and cool "
               "storage."),
            tr("Long-term backup, secondary backup and archival datasets"),
            tr("Original raw data that must be preserved even after it has been processed"),
            tr("Compliance and archival data that needs to be stored for a long time and is hardly ever accessed"));
    }
    return QString();
}

} // namespace NVB::GUI::StorageClassInfo
