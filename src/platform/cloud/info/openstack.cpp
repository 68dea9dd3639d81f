#include "openstack.h"

namespace NVL::Cloud::Info {

OpenStack::OpenStack(NVL::Cloud::Type type)
    : Base(type)
{ }

QVector<QPair<QString, QString>> OpenStack::endpoints() const
{
    switch (type()) {
    case NVL::Cloud::Type::HPCloud:
        return {
            {QStringLiteral("HP Cloud"), QStringLiteral("https://region-a.geo-1.identity.hpcloudsvc.com:35357/v1.0/")}};
    case NVL::Cloud::Type::OracleCloud: {
        QVector<QPair<QString, QString>> list;
        const QVector<QPair<QString, QString>> regions
            = {{QStringLiteral("US Commercial 1 (us1)"), QStringLiteral("us1")},
                {QStringLiteral("US Commercial 2 (us2)"), QStringLiteral("us2")},
                {QStringLiteral("APAC Commercial 1 (ap1)"), QStringLiteral("ap1")},
                {QStringLiteral("APAC Commercial 2 (ap2)"), QStringLiteral("ap2")},
                {QStringLiteral("EMEA Commercial 1 (em1)"), QStringLiteral("em1")},
                {QStringLiteral("EMEA Commercial 2 (em2)"), QStringLiteral("em2")},
                {QStringLiteral("EMEA Commercial 3 (em3)"), QStringLiteral("em3")}};
        for (const auto& region : regions)
            list.append(
                {region.first, QStringLiteral("https://%1.storage.oraclecloud.com/auth/v1.0").arg(region.second)});
        return list;
    }
    case NVL::Cloud::Type::Rackspace:
        return {{QStringLiteral("US-based"), QStringLiteral("https://identity.api.rackspacecloud.com/v1.0")},
            {QStringLiteral("UK-based"), QStringLiteral("https://lon.identity.api.rackspacecloud.com/v1.0")}};
    case NVL::Cloud::Type::SoftLayer: {
        QVector<QPair<QString, QString>> list;
        const QVector<QPair<QString, QString>> regions = {{QStringLiteral("Amsterdam"), QStringLiteral("ams01")},
            {QStringLiteral("Frankfurt"), QStringLiteral("fra02")},
            {QStringLiteral("Hong Kong"), QStringLiteral("hkg02")}, {QStringLiteral("London"), QStringLiteral("lon02")},
            {QStringLiteral("Melbourne"), QStringLiteral("mel01")}, {QStringLiteral("Mexico"), QStringLiteral("mex01")},
            {QStringLiteral("Milan"), QStringLiteral("mil01")}, {QStringLiteral("Montreal"), QStringLiteral("mon01")},
            {QStringLiteral("Paris"), QStringLiteral("par01")}, {QStringLiteral("San Jose"), QStringLiteral("sjc01")},
            {QStringLiteral("Sao Paulo"), QStringLiteral("sao01")}, {QStringLiteral("Sydney"), QStringLiteral("syd01")},
            {QStringLiteral("Singapore"), QStringLiteral("sng01")}, {QStringLiteral("Tokyo"), QStringLiteral("tok02")},
            {QStringLiteral("Toronto"), QStringLiteral("tor01")},
            {QStringLiteral("US Dallas"), QStringLiteral("dal05")},
            {QStringLiteral("Chennai"), QStringLiteral("che01")}};
        for (const auto& region : regions)
            list.append(
                {region.first, QStringLiteral("https://%1.objectstorage.softlayer.net/auth/v1.0").arg(region.second)});
        return list;
    }
    default:
        return {};
    }
}

} // namespace NVL::Cloud::Info
