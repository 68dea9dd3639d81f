#pragma once

#include "amazons3compatible.h"

namespace NVB::GUI::Settings::Account {

// The read-only view of a CenturyLink account.
class CenturyLink : public AmazonS3Compatible
{
    Q_OBJECT

public:
    class Add;

    explicit CenturyLink(QWidget* parent = nullptr);
};

} // namespace NVB::GUI::Settings::Account
