#include "amazones3chine.h"

namespace NVB::GUI::Settings::Account {

AmazoneS3Chine::AmazoneS3Chine(QWidget* parent)
    : AmazonS3Compatible(NVL::Cloud::Type::AmazonS3Chinese, false, parent)
{ }

} // namespace NVB::GUI::Settings::Account
