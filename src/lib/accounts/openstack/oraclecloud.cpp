#include "oraclecloud.h"

namespace NVB::GUI::Settings::Account {

OracleCloud::OracleCloud(QWidget* parent)
    : OpenStack(NVL::Cloud::Type::OracleCloud, false, true, parent)
{ }

} // namespace NVB::GUI::Settings::Account
