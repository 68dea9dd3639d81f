#pragma once

#include "amazons3compatible.h"

namespace NVB::GUI::Settings::Account {

// The read-only view of a Verizon account.
class Verizon : public AmazonS3Compatible
{
    Q_OBJECT

public:
    class Add;

    explicit Verizon(QWidget* parent = nullptr);
};

} // namespace NVB::GUI::Settings::Account
