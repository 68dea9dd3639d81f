#include "softlayeradd.h"

namespace NVB::GUI::Settings::Account {

SoftLayer::Add::Add(QWidget* parent)
    : OpenStack::Add(NVL::Cloud::Type::SoftLayer, presets(), false, false, false, parent)
{ }

OpenStack::Add::Presets SoftLayer::Add::presets()
{
    return {{QStringLiteral("Amsterdam"), QStringLiteral("https://ams01.objectstorage.softlayer.net/auth/v1.0")},
        {QStringLiteral("Frankfurt"), QStringLiteral("https://fra02.objectstorage.softlayer.net/auth/v1.0")},
        {QStringLiteral("Hong Kong"), QStringLiteral("https://hkg02.objectstorage.softlayer.net/auth/v1.0")},
        {QStringLiteral("London"), QStringLiteral("https://lon02.objectstorage.softlayer.net/auth/v1.0")},
        {QStringLiteral("Melbourne"), QStringLiteral("https://mel01.objectstorage.softlayer.net/auth/v1.0")},
        {QStringLiteral("Mexico"), QStringLiteral("https://mex01.objectstorage.softlayer.net/auth/v1.0")},
        {QStringLiteral("Milan"), QStringLiteral("https://mil01.objectstorage.softlayer.net/auth/v1.0")},
        {QStringLiteral("Montreal"), QStringLiteral("https://mon01.objectstorage.softlayer.net/auth/v1.0")},
        {QStringLiteral("Paris"), QStringLiteral("https://par01.objectstorage.softlayer.net/auth/v1.0")},
        {QStringLiteral("San Jose"), QStringLiteral("https://sjc01.objectstorage.softlayer.net/auth/v1.0")},
        {QStringLiteral("Sao Paulo"), QStringLiteral("https://sao01.objectstorage.softlayer.net/auth/v1.0")},
        {QStringLiteral("Sydney"), QStringLiteral("https://syd01.objectstorage.softlayer.net/auth/v1.0")},
        {QStringLiteral("Singapore"), QStringLiteral("https://sng01.objectstorage.softlayer.net/auth/v1.0")},
        {QStringLiteral("Tokyo"), QStringLiteral("https://tok02.objectstorage.softlayer.net/auth/v1.0")},
        {QStringLiteral("Toronto"), QStringLiteral("https://tor01.objectstorage.softlayer.net/auth/v1.0")},
        {QStringLiteral("US Dallas"), QStringLiteral("https://dal05.objectstorage.softlayer.net/auth/v1.0")},
        {QStringLiteral("Chennai"), QStringLiteral("https://che01.objectstorage.softlayer.net/auth/v1.0")}};
}

} // namespace NVB::GUI::Settings::Account
