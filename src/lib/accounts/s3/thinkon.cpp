#include "thinkon.h"

namespace NVB::GUI::Settings::Account {

ThinkOn::ThinkOn(QWidget* parent)
    : AmazonS3Compatible(NVL::Cloud::Type::ThinkOn, false, parent)
{ }

} // namespace NVB::GUI::Settings::Account
