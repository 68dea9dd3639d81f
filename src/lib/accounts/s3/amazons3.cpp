#include "amazons3.h"

namespace NVB::GUI::Settings::Account {

AmazonS3::AmazonS3(QWidget* parent)
    : AmazonS3Compatible(NVL::Cloud::Type::AmazonS3, false, parent)
{ }

} // namespace NVB::GUI::Settings::Account
