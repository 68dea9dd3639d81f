#pragma once

#include "amazons3compatible.h"

namespace NVB::GUI::Settings::Account {

// The read-only view of a Cloudian account.
class Cloudian : public AmazonS3Compatible
{
    Q_OBJECT

public:
    class Add;

    explicit Cloudian(QWidget* parent = nullptr);
};

} // namespace NVB::GUI::Settings::Account
