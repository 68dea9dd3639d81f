#pragma once

#include "amazons3compatibleadd.h"
#include "scality.h"

namespace NVB::GUI::Settings::Account {

// The dialog of a Scality account: the S3 body with Scality's endpoint
// preset.
class Scality::Add : public AmazonS3Compatible::Add
{
    Q_OBJECT

public:
    explicit Add(QWidget* parent = nullptr);
};

} // namespace NVB::GUI::Settings::Account
