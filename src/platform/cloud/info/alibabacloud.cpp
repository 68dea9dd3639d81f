#include "alibabacloud.h"

#include <QVector>

namespace NVL::Cloud::Info {

AlibabaCloud::AlibabaCloud()
    : AmazonS3Like(NVL::Cloud::Type::AlibabaCloud)
{ }

QMap<QString, QPair<QString, QString>> AlibabaCloud::regions() const
{
    const QVector<QPair<QString, QString>> list = {
        {QStringLiteral("oss-cn-hangzhou"), QStringLiteral("China (Hangzhou)")},
        {QStringLiteral("oss-cn-shanghai"), QStringLiteral("China (Shanghai)")},
        {QStringLiteral("oss-cn-beijing"), QStringLiteral("China (Beijing)")},
        {QStringLiteral("oss-cn-shenzhen"), QStringLiteral("China (Shenzhen)")},
        {QStringLiteral("oss-cn-hongkong"), QStringLiteral("China (Hong Kong)")},
        {QStringLiteral("oss-us-west-1"), QStringLiteral("US (Silicon Valley)")},
        {QStringLiteral("oss-us-east-1"), QStringLiteral("US (Virginia)")},
        {QStringLiteral("oss-ap-southeast-1"), QStringLiteral("Singapore")},
        {QStringLiteral("oss-ap-southeast-2"), QStringLiteral("Australia (Sydney)")},
        {QStringLiteral("oss-ap-northeast-1"), QStringLiteral("Japan (Tokyo)")},
        {QStringLiteral("oss-eu-central-1"), QStringLiteral("Germany (Frankfurt)")},
        {QStringLiteral("oss-eu-west-1"), QStringLiteral("UK (London)")},
    };
    QMap<QString, QPair<QString, QString>> regions;
    for (const auto& region : list)
        regions.insert(region.first, qMakePair(region.second, QStringLiteral("%1.aliyuncs.com").arg(region.first)));
    return regions;
}

} // namespace NVL::Cloud::Info
