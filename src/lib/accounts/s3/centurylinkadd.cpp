#include "centurylinkadd.h"

namespace NVB::GUI::Settings::Account {

CenturyLink::Add::Add(QWidget* parent)
    : AmazonS3Compatible::Add(NVL::Cloud::Type::CenturyLink, true, false, parent)
{
    setEndpointPreset();
}

} // namespace NVB::GUI::Settings::Account
