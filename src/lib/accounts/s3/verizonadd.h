#pragma once

#include "amazons3compatibleadd.h"
#include "verizon.h"

namespace NVB::GUI::Settings::Account {

// The dialog of a Verizon account: the S3 body with Verizon's endpoint
// preset.
class Verizon::Add : public AmazonS3Compatible::Add
{
    Q_OBJECT

public:
    explicit Add(QWidget* parent = nullptr);
};

} // namespace NVB::GUI::Settings::Account
