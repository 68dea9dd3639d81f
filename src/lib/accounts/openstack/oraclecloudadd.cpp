#include "oraclecloudadd.h"

namespace NVB::GUI::Settings::Account {

OracleCloud::Add::Add(QWidget* parent)
    : OpenStack::Add(NVL::Cloud::Type::OracleCloud, presets(), false, true, true, parent)
{ }

OpenStack::Add::Presets OracleCloud::Add::presets()
{
    return {{QStringLiteral("US Commercial 1 (us1)"), QStringLiteral("https://us1.storage.oraclecloud.com/auth/v1.0")},
        {QStringLiteral("US Commercial 2 (us2)"), QStringLiteral("https://us2.storage.oraclecloud.com/auth/v1.0")},
        {QStringLiteral("APAC Commercial 1 (ap1)"), QStringLiteral("https://ap1.storage.oraclecloud.com/auth/v1.0")},
        {QStringLiteral("APAC Commercial 2 (ap2)"), QStringLiteral("https://ap2.storage.oraclecloud.com/auth/v1.0")},
        {QStringLiteral("EMEA Commercial 1 (em1)"), QStringLiteral("https://em1.storage.oraclecloud.com/auth/v1.0")},
        {QStringLiteral("EMEA Commercial 2 (em2)"), QStringLiteral("https://em2.storage.oraclecloud.com/auth/v1.0")},
        {QStringLiteral("EMEA Commercial 3 (em3)"), QStringLiteral("https://em3.storage.oraclecloud.com/auth/v1.0")}};
}

} // namespace NVB::GUI::Settings::Account
