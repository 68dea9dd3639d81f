#include "cloudtype.h"

#include <QCoreApplication>

namespace NVL::Cloud {

namespace Name {
const QString FileSystem = QStringLiteral("FileSystem");
const QString AmazonS3 = QStringLiteral("AmazonS3");
const QString AzureBlob = QStringLiteral("AzureBlob");
const QString OracleCloud = QStringLiteral("OracleCloud");
const QString Rackspace = QStringLiteral("Rackspace");
const QString Openstack = QStringLiteral("Openstack");
const QString GoogleStorage = QStringLiteral("GoogleStorage");
const QString SoftLayer = QStringLiteral("SoftLayer");
const QString HPCloud = QStringLiteral("HPCloud");
const QString HPHelion = QStringLiteral("HPHelion");
const QString AmazonS3Like = QStringLiteral("S3Compatible");
const QString Scality = QStringLiteral("Scality");
const QString DreamObjects = QStringLiteral("DreamObjects");
const QString Cloudian = QStringLiteral("Cloudian");
const QString ThinkOn = QStringLiteral("ThinkOn");
const QString Aruba = QStringLiteral("Aruba");
const QString Tiscali = QStringLiteral("Tiscali");
const QString Seeweb = QStringLiteral("Seeweb");
const QString CenturyLink = QStringLiteral("CenturyLink");
const QString AmazonS3Chinese = QStringLiteral("AmazonS3Chinese");
const QString Minio = QStringLiteral("Minio");
const QString Dunkel = QStringLiteral("Dunkel");
const QString Connectria = QStringLiteral("Connectria");
const QString HostEurope = QStringLiteral("HostEurope");
const QString GreenQloud = QStringLiteral("GreenQloud");
const QString Constant = QStringLiteral("Constant");
const QString Webzilla = QStringLiteral("Webzilla");
const QString Verizon = QStringLiteral("Verizon");
const QString Wasabi = QStringLiteral("Wasabi");
const QString AlibabaCloud = QStringLiteral("AlibabaCloud");
const QString BackBlaze = QStringLiteral("BackBlaze");
const QString Sftp = QStringLiteral("Sftp");
const QString NvlUbWasabi = QStringLiteral("Wasabi (UB)");
const QString NvlUbWasabiStage = QStringLiteral("Wasabi (UB) Stage");
const QString WasabiStage = QStringLiteral("Wasabi Stage");
const QString NvlUbAmazonS3 = QStringLiteral("AmazonS3 (UB)");
const QString MNS_CLOUD = QStringLiteral("MNS_CLOUD");
} // namespace Name

const QMap<Type, QString> TypeName = {
    {Type::FileSystem, Name::FileSystem},
    {Type::AmazonS3, Name::AmazonS3},
    {Type::AzureBlob, Name::AzureBlob},
    {Type::OracleCloud, Name::OracleCloud},
    {Type::Rackspace, Name::Rackspace},
    {Type::Openstack, Name::Openstack},
    {Type::GoogleStorage, Name::GoogleStorage},
    {Type::SoftLayer, Name::SoftLayer},
    {Type::HPCloud, Name::HPCloud},
    {Type::HPHelion, Name::HPHelion},
    {Type::S3Compatible, Name::AmazonS3Like},
    {Type::Scality, Name::Scality},
    {Type::DreamObjects, Name::DreamObjects},
    {Type::Cloudian, Name::Cloudian},
    {Type::ThinkOn, Name::ThinkOn},
    {Type::Aruba, Name::Aruba},
    {Type::Tiscali, Name::Tiscali},
    {Type::Seeweb, Name::Seeweb},
    {Type::CenturyLink, Name::CenturyLink},
    {Type::AmazonS3Chinese, Name::AmazonS3Chinese},
    {Type::Minio, Name::Minio},
    {Type::Dunkel, Name::Dunkel},
    {Type::Connectria, Name::Connectria},
    {Type::HostEurope, Name::HostEurope},
    {Type::GreenQloud, Name::GreenQloud},
    {Type::Constant, Name::Constant},
    {Type::Webzilla, Name::Webzilla},
    {Type::Verizon, Name::Verizon},
    {Type::Wasabi, Name::Wasabi},
    {Type::AlibabaCloud, Name::AlibabaCloud},
    {Type::BackBlaze, Name::BackBlaze},
    {Type::Sftp, Name::Sftp},
    {Type::NvlUbWasabi, Name::NvlUbWasabi},
    {Type::NvlUbWasabiStage, Name::NvlUbWasabiStage},
    {Type::WasabiStage, Name::WasabiStage},
    {Type::NvlUbAmazonS3, Name::NvlUbAmazonS3},
    {Type::MNS_CLOUD, Name::MNS_CLOUD},
};

const QSet<Type> S3Compatible = {Type::S3Compatible, Type::Scality, Type::DreamObjects, Type::Cloudian, Type::ThinkOn,
    Type::Aruba, Type::Tiscali, Type::Seeweb, Type::CenturyLink, Type::Dunkel, Type::Connectria, Type::HostEurope,
    Type::GreenQloud, Type::Constant, Type::Webzilla, Type::Minio, Type::Verizon, Type::Wasabi, Type::AlibabaCloud,
    Type::NvlUbWasabi, Type::NvlUbWasabiStage, Type::WasabiStage};

const QSet<Type> AmazonS3 = {Type::AmazonS3, Type::AmazonS3Chinese, Type::NvlUbAmazonS3};

const QSet<Type> OpenStack
    = {Type::OracleCloud, Type::Rackspace, Type::Openstack, Type::SoftLayer, Type::HPCloud, Type::HPHelion};

const QSet<Type> NetworkConnection = {Type::Sftp};

const QVector<Type> SelectorOrder = {Type::AmazonS3, Type::AzureBlob, Type::FileSystem, Type::GoogleStorage,
    Type::Openstack, Type::Rackspace, Type::AmazonS3Chinese, Type::BackBlaze, Type::CenturyLink, Type::OracleCloud,
    Type::Scality, Type::SoftLayer, Type::S3Compatible, Type::Cloudian, Type::DreamObjects, Type::HPCloud,
    Type::ThinkOn, Type::Verizon, Type::Minio, Type::Wasabi, Type::AlibabaCloud, Type::Sftp};

uint qHash(Type type, uint seed)
{
    return ::qHash(static_cast<int>(type), seed);
}

QString displayNameSource(Type type)
{
    switch (type) {
    case Type::FileSystem:
        return QString::fromUtf8(QT_TRANSLATE_NOOP("NVL::Cloud", "File System"));
    case Type::AmazonS3:
        return QString::fromUtf8(QT_TRANSLATE_NOOP("NVL::Cloud", "Amazon S3 & Glacier"));
    case Type::AzureBlob:
        return QString::fromUtf8(QT_TRANSLATE_NOOP("NVL::Cloud", "Azure"));
    case Type::OracleCloud:
        return QString::fromUtf8(QT_TRANSLATE_NOOP("NVL::Cloud", "Oracle Cloud"));
    case Type::Rackspace:
        return QString::fromUtf8(QT_TRANSLATE_NOOP("NVL::Cloud", "Rackspace"));
    case Type::Openstack:
        return QString::fromUtf8(QT_TRANSLATE_NOOP("NVL::Cloud", "OpenStack"));
    case Type::GoogleStorage:
        return QString::fromUtf8(QT_TRANSLATE_NOOP("NVL::Cloud", "Google Cloud"));
    case Type::SoftLayer:
        return QString::fromUtf8(QT_TRANSLATE_NOOP("NVL::Cloud", "SoftLayer"));
    case Type::HPCloud:
        return QString::fromUtf8(QT_TRANSLATE_NOOP("NVL::Cloud", "HP Cloud"));
    case Type::S3Compatible:
        return QString::fromUtf8(QT_TRANSLATE_NOOP("NVL::Cloud", "S3 Compatible"));
    case Type::Scality:
        return QString::fromUtf8(QT_TRANSLATE_NOOP("NVL::Cloud", "Scality"));
    case Type::DreamObjects:
        return QString::fromUtf8(QT_TRANSLATE_NOOP("NVL::Cloud", "DreamObjects"));
    case Type::Cloudian:
        return QString::fromUtf8(QT_TRANSLATE_NOOP("NVL::Cloud", "Cloudian"));
    case Type::ThinkOn:
        return QString::fromUtf8(QT_TRANSLATE_NOOP("NVL::Cloud", "ThinkOn"));
    case Type::CenturyLink:
        return QString::fromUtf8(QT_TRANSLATE_NOOP("NVL::Cloud", "CenturyLink"));
    case Type::AmazonS3Chinese:
        return QString::fromUtf8(QT_TRANSLATE_NOOP("NVL::Cloud", "Amazon S3 (China)"));
    case Type::Minio:
        return QString::fromUtf8(QT_TRANSLATE_NOOP("NVL::Cloud", "Minio"));
    case Type::Verizon:
        return QString::fromUtf8(QT_TRANSLATE_NOOP("NVL::Cloud", "Verizon"));
    case Type::Wasabi:
        return QString::fromUtf8(QT_TRANSLATE_NOOP("NVL::Cloud", "Wasabi"));
    case Type::AlibabaCloud:
        return QString::fromUtf8(QT_TRANSLATE_NOOP("NVL::Cloud", "Alibaba Cloud"));
    case Type::BackBlaze:
        return QString::fromUtf8(QT_TRANSLATE_NOOP("NVL::Cloud", "Backblaze B2"));
    case Type::Sftp:
        return QString::fromUtf8(QT_TRANSLATE_NOOP("NVL::Cloud", "SFTP"));
    default:
        return QString();
    }
}

QString displayName(Type type)
{
    const QString source = displayNameSource(type);
    if (source.isEmpty())
        return source;
    return QCoreApplication::translate("NVL::Cloud", source.toUtf8().constData());
}

Type typeFromName(const QString& name, bool* ok)
{
    for (auto it = TypeName.cbegin(); it != TypeName.cend(); ++it) {
        if (it.value() == name) {
            if (ok)
                *ok = true;
            return it.key();
        }
    }
    if (ok)
        *ok = false;
    return Type::FileSystem;
}

bool isKnownType(int value)
{
    return TypeName.contains(static_cast<Type>(value));
}

} // namespace NVL::Cloud
