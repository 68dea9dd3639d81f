#include "verizonadd.h"

namespace NVB::GUI::Settings::Account {

Verizon::Add::Add(QWidget* parent)
    : AmazonS3Compatible::Add(NVL::Cloud::Type::Verizon, false, false, parent)
{
    setEndpointPreset();
}

} // namespace NVB::GUI::Settings::Account
