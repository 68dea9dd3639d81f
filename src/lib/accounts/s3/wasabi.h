#pragma once

#include "amazons3compatible.h"

namespace NVB::GUI::Settings::Account {

// The read-only view of a Wasabi account.
class Wasabi : public AmazonS3Compatible
{
    Q_OBJECT

public:
    class Add;

    explicit Wasabi(QWidget* parent = nullptr);
};

} // namespace NVB::GUI::Settings::Account
