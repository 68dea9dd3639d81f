#include "hpcloudadd.h"

namespace NVB::GUI::Settings::Account {

HPCloud::Add::Add(QWidget* parent)
    : OpenStack::Add(NVL::Cloud::Type::HPCloud, presets(), true, true, true, parent)
{ }

OpenStack::Add::Presets HPCloud::Add::presets()
{
    return {{QStringLiteral("US East"), QStringLiteral("https://region-b.geo-1.identity.hpcloudsvc.com:35357/v1.0/")}};
}

} // namespace NVB::GUI::Settings::Account
