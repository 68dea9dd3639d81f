#include "centurylink.h"

namespace NVB::GUI::Settings::Account {

CenturyLink::CenturyLink(QWidget* parent)
    : AmazonS3Compatible(NVL::Cloud::Type::CenturyLink, true, parent)
{ }

} // namespace NVB::GUI::Settings::Account
