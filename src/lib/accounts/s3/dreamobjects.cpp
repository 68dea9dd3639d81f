#include "dreamobjects.h"

namespace NVB::GUI::Settings::Account {

DreamObjects::DreamObjects(QWidget* parent)
    : AmazonS3Compatible(NVL::Cloud::Type::DreamObjects, false, parent)
{ }

} // namespace NVB::GUI::Settings::Account
