#include "scalityadd.h"

namespace NVB::GUI::Settings::Account {

Scality::Add::Add(QWidget* parent)
    : AmazonS3Compatible::Add(NVL::Cloud::Type::Scality, true, false, parent)
{
    setEndpointPreset();
}

} // namespace NVB::GUI::Settings::Account
