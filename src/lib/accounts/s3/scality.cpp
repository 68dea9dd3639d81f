#include "scality.h"

namespace NVB::GUI::Settings::Account {

Scality::Scality(QWidget* parent)
    : AmazonS3Compatible(NVL::Cloud::Type::Scality, true, parent)
{ }

} // namespace NVB::GUI::Settings::Account
