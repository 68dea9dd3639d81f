#pragma once

#include "amazons3compatibleadd.h"
#include "minio.h"

namespace NVB::GUI::Settings::Account {

// The dialog of a Minio account: the S3 body with Minio's endpoint
// preset.
class Minio::Add : public AmazonS3Compatible::Add
{
    Q_OBJECT

public:
    explicit Add(QWidget* parent = nullptr);
};

} // namespace NVB::GUI::Settings::Account
