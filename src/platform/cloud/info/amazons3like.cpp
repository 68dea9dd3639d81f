#include "amazons3like.h"

namespace NVL::Cloud::Info {

namespace {

QMap<QString, QPair<QString, QString>> wasabiRegions()
{
    QMap<QString, QPair<QString, QString>> regions;
    const QVector<QPair<QString, QString>> list = {
        {QStringLiteral("us-east-1"), QStringLiteral("US East 1 (N. Virginia)")},
        {QStringLiteral("us-east-2"), QStringLiteral("US East 2 (N. Virginia)")},
        {QStringLiteral("us-central-1"), QStringLiteral("US Central 1 (Texas)")},
        {QStringLiteral("us-west-1"), QStringLiteral("US West 1 (Oregon)")},
        {QStringLiteral("ca-central-1"), QStringLiteral("CA Central 1 (Toronto)")},
        {QStringLiteral("eu-central-1"), QStringLiteral("EU Central 1 (Amsterdam)")},
        {QStringLiteral("eu-central-2"), QStringLiteral("EU Central 2 (Frankfurt)")},
        {QStringLiteral("eu-west-1"), QStringLiteral("EU West 1 (London)")},
        {QStringLiteral("eu-west-2"), QStringLiteral("EU West 2 (Paris)")},
        {QStringLiteral("ap-northeast-1"), QStringLiteral("AP Northeast 1 (Tokyo)")},
        {QStringLiteral("ap-northeast-2"), QStringLiteral("AP Northeast 2 (Osaka)")},
        {QStringLiteral("ap-southeast-1"), QStringLiteral("AP Southeast 1 (Singapore)")},
        {QStringLiteral("ap-southeast-2"), QStringLiteral("AP Southeast 2 (Sydney)")},
    };
    for (const auto& region : list)
        regions.insert(region.first, qMakePair(region.second, QStringLiteral("s3.%1.wasabisys.com").arg(region.first)));
    return regions;
}

} // namespace

AmazonS3Like::AmazonS3Like(NVL::Cloud::Type type)
    : Base(type)
{ }

QUrl AmazonS3Like::defaultEndpoint() const
{
    switch (type()) {
    case NVL::Cloud::Type::AmazonS3:
    case NVL::Cloud::Type::NvlUbAmazonS3:
        return QUrl(QStringLiteral("https://s3.amazonaws.com"));
    case NVL::Cloud::Type::AmazonS3Chinese:
        return QUrl(QStringLiteral("https://s3.cn-north-1.amazonaws.com.cn"));
    case NVL::Cloud::Type::Wasabi:
    case NVL::Cloud::Type::NvlUbWasabi:
    case NVL::Cloud::Type::NvlUbWasabiStage:
    case NVL::Cloud::Type::WasabiStage:
        return QUrl(QStringLiteral("https://s3.wasabisys.com"));
    case NVL::Cloud::Type::AlibabaCloud:
        return QUrl(QStringLiteral("https://oss-us-east-1.aliyuncs.com"));
    case NVL::Cloud::Type::Verizon:
        return QUrl(QStringLiteral("https://iad3a.storage.verizon.com"));
    case NVL::Cloud::Type::ThinkOn:
        return QUrl(QStringLiteral("https://s3.thinkon.com"));
    case NVL::Cloud::Type::CenturyLink:
        return QUrl(QStringLiteral("https://canada.os.ctl.io"));
    case NVL::Cloud::Type::Scality:
        return QUrl(QStringLiteral("https://s3.scality.com"));
    case NVL::Cloud::Type::Cloudian:
        return QUrl(QStringLiteral("https://s3.cloudian.com"));
    case NVL::Cloud::Type::DreamObjects:
        return QUrl(QStringLiteral("https://objects-us-east-1.dream.io"));
    default:
        // S3 Compatible, Minio and the rest: the user's own server.
        return QUrl();
    }
}

AmazonS3Like::Signature AmazonS3Like::defaultSignature() const
{
    switch (type()) {
    case NVL::Cloud::Type::AmazonS3:
    case NVL::Cloud::Type::NvlUbAmazonS3:
    case NVL::Cloud::Type::AmazonS3Chinese:
    case NVL::Cloud::Type::Wasabi:
    case NVL::Cloud::Type::NvlUbWasabi:
    case NVL::Cloud::Type::NvlUbWasabiStage:
    case NVL::Cloud::Type::WasabiStage:
    case NVL::Cloud::Type::Minio:
    case NVL::Cloud::Type::S3Compatible:
        return V4;
    default:
        return V2;
    }
}

QMap<QString, QPair<QString, QString>> AmazonS3Like::regions() const
{
    switch (type()) {
    case NVL::Cloud::Type::Wasabi:
    case NVL::Cloud::Type::NvlUbWasabi:
    case NVL::Cloud::Type::NvlUbWasabiStage:
    case NVL::Cloud::Type::WasabiStage:
        return wasabiRegions();
    default:
        return {};
    }
}

} // namespace NVL::Cloud::Info
