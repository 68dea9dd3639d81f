#include "softlayer.h"

namespace NVB::GUI::Settings::Account {

SoftLayer::SoftLayer(QWidget* parent)
    : OpenStack(NVL::Cloud::Type::SoftLayer, false, false, parent)
{ }

} // namespace NVB::GUI::Settings::Account
