#include "dreamobjectsadd.h"

namespace NVB::GUI::Settings::Account {

DreamObjects::Add::Add(QWidget* parent)
    : AmazonS3Compatible::Add(NVL::Cloud::Type::DreamObjects, true, false, parent)
{
    setEndpointPreset();
}

} // namespace NVB::GUI::Settings::Account
