#include "alibabacloud.h"

namespace NVB::GUI::Settings::Account {

AlibabaCloud::AlibabaCloud(QWidget* parent)
    : AmazonS3Compatible(NVL::Cloud::Type::AlibabaCloud, false, parent)
{ }

} // namespace NVB::GUI::Settings::Account
