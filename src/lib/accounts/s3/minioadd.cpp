#include "minioadd.h"

namespace NVB::GUI::Settings::Account {

Minio::Add::Add(QWidget* parent)
    : AmazonS3Compatible::Add(NVL::Cloud::Type::Minio, true, false, parent)
{
    // A server of the user's own: nothing to preset.
}

} // namespace NVB::GUI::Settings::Account
