#include "verizon.h"

namespace NVB::GUI::Settings::Account {

Verizon::Verizon(QWidget* parent)
    : AmazonS3Compatible(NVL::Cloud::Type::Verizon, false, parent)
{ }

} // namespace NVB::GUI::Settings::Account
