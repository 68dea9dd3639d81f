#pragma once

#include "amazons3compatibleadd.h"
#include "dreamobjects.h"

namespace NVB::GUI::Settings::Account {

// The dialog of a DreamObjects account: the S3 body with DreamObjects's endpoint
// preset.
class DreamObjects::Add : public AmazonS3Compatible::Add
{
    Q_OBJECT

public:
    explicit Add(QWidget* parent = nullptr);
};

} // namespace NVB::GUI::Settings::Account
