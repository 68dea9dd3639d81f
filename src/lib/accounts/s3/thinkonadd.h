#pragma once

#include "amazons3compatibleadd.h"
#include "thinkon.h"

namespace NVB::GUI::Settings::Account {

// The dialog of a ThinkOn account: the S3 body with ThinkOn's endpoint
// preset.
class ThinkOn::Add : public AmazonS3Compatible::Add
{
    Q_OBJECT

public:
    explicit Add(QWidget* parent = nullptr);
};

} // namespace NVB::GUI::Settings::Account
