#include "hpcloud.h"

namespace NVB::GUI::Settings::Account {

HPCloud::HPCloud(QWidget* parent)
    : OpenStack(NVL::Cloud::Type::HPCloud, true, true, parent)
{ }

} // namespace NVB::GUI::Settings::Account
