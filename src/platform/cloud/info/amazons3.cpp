#include "amazons3.h"

#include <QVector>

namespace NVL::Cloud::Info {

AmazonS3::AmazonS3(NVL::Cloud::Type type)
    : AmazonS3Like(type)
{ }

QMap<QString, QPair<QString, QString>> AmazonS3::regions() const
{
    QVector<QPair<QString, QString>> list;
    QString domain = QStringLiteral("amazonaws.com");
    if (type() == NVL::Cloud::Type::AmazonS3Chinese) {
        list = {{QStringLiteral("cn-north-1"), QStringLiteral("China (Beijing)")},
            {QStringLiteral("cn-northwest-1"), QStringLiteral("China (Ningxia)")}};
        domain = QStringLiteral("amazonaws.com.cn");
    } else {
        list = {{QStringLiteral("us-east-1"), QStringLiteral("US East (N. Virginia)")},
            {QStringLiteral("us-east-2"), QStringLiteral("US East (Ohio)")},
            {QStringLiteral("us-west-1"), QStringLiteral("US West (N. California)")},
            {QStringLiteral("us-west-2"), QStringLiteral("US West (Oregon)")},
            {QStringLiteral("ca-central-1"), QStringLiteral("Canada (Central)")},
            {QStringLiteral("sa-east-1"), QStringLiteral("South America (Sao Paulo)")},
            {QStringLiteral("eu-west-1"), QStringLiteral("Europe (Ireland)")},
            {QStringLiteral("eu-west-2"), QStringLiteral("Europe (London)")},
            {QStringLiteral("eu-west-3"), QStringLiteral("Europe (Paris)")},
            {QStringLiteral("eu-central-1"), QStringLiteral("Europe (Frankfurt)")},
            {QStringLiteral("eu-north-1"), QStringLiteral("Europe (Stockholm)")},
            {QStringLiteral("eu-south-1"), QStringLiteral("Europe (Milan)")},
            {QStringLiteral("ap-east-1"), QStringLiteral("Asia Pacific (Hong Kong)")},
            {QStringLiteral("ap-south-1"), QStringLiteral("Asia Pacific (Mumbai)")},
            {QStringLiteral("ap-northeast-1"), QStringLiteral("Asia Pacific (Tokyo)")},
            {QStringLiteral("ap-northeast-2"), QStringLiteral("Asia Pacific (Seoul)")},
            {QStringLiteral("ap-northeast-3"), QStringLiteral("Asia Pacific (Osaka)")},
            {QStringLiteral("ap-southeast-1"), QStringLiteral("Asia Pacific (Singapore)")},
            {QStringLiteral("ap-southeast-2"), QStringLiteral("Asia Pacific (Sydney)")},
            {QStringLiteral("me-south-1"), QStringLiteral("Middle East (Bahrain)")},
            {QStringLiteral("af-south-1"), QStringLiteral("Africa (Cape Town)")}};
    }
    QMap<QString, QPair<QString, QString>> regions;
    for (const auto& region : qAsConst(list))
        regions.insert(region.first, qMakePair(region.second, QStringLiteral("s3.%1.%2").arg(region.first, domain)));
    return regions;
}

} // namespace NVL::Cloud::Info
