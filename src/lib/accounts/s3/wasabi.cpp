#include "wasabi.h"

namespace NVB::GUI::Settings::Account {

Wasabi::Wasabi(QWidget* parent)
    : AmazonS3Compatible(NVL::Cloud::Type::Wasabi, false, parent)
{ }

} // namespace NVB::GUI::Settings::Account
