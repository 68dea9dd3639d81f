#pragma once

#include "amazons3compatibleadd.h"
#include "cloudian.h"

namespace NVB::GUI::Settings::Account {

// The dialog of a Cloudian account: the S3 body with Cloudian's endpoint
// preset.
class Cloudian::Add : public AmazonS3Compatible::Add
{
    Q_OBJECT

public:
    explicit Add(QWidget* parent = nullptr);
};

} // namespace NVB::GUI::Settings::Account
