#pragma once

#include "amazons3compatible.h"

namespace NVB::GUI::Settings::Account {

// The read-only view of a Minio account.
class Minio : public AmazonS3Compatible
{
    Q_OBJECT

public:
    class Add;

    explicit Minio(QWidget* parent = nullptr);
};

} // namespace NVB::GUI::Settings::Account
