#include "rackspaceadd.h"

namespace NVB::GUI::Settings::Account {

Rackspace::Add::Add(QWidget* parent)
    : OpenStack::Add(NVL::Cloud::Type::Rackspace, presets(), true, true, false, parent)
{ }

OpenStack::Add::Presets Rackspace::Add::presets()
{
    return {{QStringLiteral("US-based"), QStringLiteral("https://identity.api.rackspacecloud.com/v1.0")},
        {QStringLiteral("UK-based"), QStringLiteral("https://lon.identity.api.rackspacecloud.com/v1.0")}};
}

} // namespace NVB::GUI::Settings::Account
