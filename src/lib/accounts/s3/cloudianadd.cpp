#include "cloudianadd.h"

namespace NVB::GUI::Settings::Account {

Cloudian::Add::Add(QWidget* parent)
    : AmazonS3Compatible::Add(NVL::Cloud::Type::Cloudian, true, false, parent)
{
    setEndpointPreset();
}

} // namespace NVB::GUI::Settings::Account
