#include "rackspace.h"

namespace NVB::GUI::Settings::Account {

Rackspace::Rackspace(QWidget* parent)
    : OpenStack(NVL::Cloud::Type::Rackspace, true, true, parent)
{ }

} // namespace NVB::GUI::Settings::Account
