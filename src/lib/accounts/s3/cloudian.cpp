#include "cloudian.h"

namespace NVB::GUI::Settings::Account {

Cloudian::Cloudian(QWidget* parent)
    : AmazonS3Compatible(NVL::Cloud::Type::Cloudian, false, parent)
{ }

} // namespace NVB::GUI::Settings::Account
