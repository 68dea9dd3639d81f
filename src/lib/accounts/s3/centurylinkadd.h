#pragma once

#include "amazons3compatibleadd.h"
#include "centurylink.h"

namespace NVB::GUI::Settings::Account {

// The dialog of a CenturyLink account: the S3 body with CenturyLink's endpoint
// preset.
class CenturyLink::Add : public AmazonS3Compatible::Add
{
    Q_OBJECT

public:
    explicit Add(QWidget* parent = nullptr);
};

} // namespace NVB::GUI::Settings::Account
