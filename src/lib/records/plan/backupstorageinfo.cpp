#include "backupstorageinfo.h"

#include "records/recordxml.h"

namespace NVB::Info::Plan {

QString BackupStorageInfo::amazonS3StorageClassToStr(AmazonS3StorageClass storageClass)
{
    switch (storageClass) {
    case Standard:
        return QStringLiteral("Standard");
    case GlacierFlexibleRetrieval:
        return QStringLiteral("Glacier Flexible Retrieval");
    case StandardIA:
        return QStringLiteral("Standard-IA");
    case OneZoneIA:
        return QStringLiteral("One Zone-IA");
    case IntelligentTiering:
        return QStringLiteral("Intelligent-Tiering");
    case GlacierDeepArchive:
        return QStringLiteral("Glacier Deep Archive");
    case GlacierInstantRetrieval:
        return QStringLiteral("Glacier Instant Retrieval");
    }
    return QString();
}

QString BackupStorageInfo::azureBlobStorageClassToStr(AzureBlobStorageClass storageClass)
{
    switch (storageClass) {
    case Default:
        return QStringLiteral("Default");
    case Cool:
        return QStringLiteral("Cool");
    case Archive:
        return QStringLiteral("Archive");
    }
    return QString();
}

void BackupStorageInfo::writeFields(QDomElement& e) const
{
    StorageInfo::writeFields(e);
    RecordXml::addBool(e, QStringLiteral("UseSSE"), m_useSSE);
    RecordXml::addInt(e, QStringLiteral("StorageClassAmazonS3"), m_storageClassAmazonS3);
    RecordXml::addInt(e, QStringLiteral("StorageClassAzureBlob"), m_storageClassAzureBlob);
}

void BackupStorageInfo::readFields(const QDomElement& e)
{
    StorageInfo::readFields(e);
    m_useSSE = RecordXml::toBool(e, QStringLiteral("UseSSE"));
    m_storageClassAmazonS3 = AmazonS3StorageClass(RecordXml::toEnum(e, QStringLiteral("StorageClassAmazonS3"),
        {Standard, GlacierFlexibleRetrieval, StandardIA, OneZoneIA, IntelligentTiering, GlacierDeepArchive,
            GlacierInstantRetrieval}));
    m_storageClassAzureBlob = AzureBlobStorageClass(
        RecordXml::toEnum(e, QStringLiteral("StorageClassAzureBlob"), {Default, Cool, Archive}));
}

} // namespace NVB::Info::Plan
