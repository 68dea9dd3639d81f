#include "thinkonadd.h"

namespace NVB::GUI::Settings::Account {

ThinkOn::Add::Add(QWidget* parent)
    : AmazonS3Compatible::Add(NVL::Cloud::Type::ThinkOn, false, false, parent)
{
    setEndpointPreset();
}

} // namespace NVB::GUI::Settings::Account
