#include "minio.h"

namespace NVB::GUI::Settings::Account {

Minio::Minio(QWidget* parent)
    : AmazonS3Compatible(NVL::Cloud::Type::Minio, true, parent)
{ }

} // namespace NVB::GUI::Settings::Account
