#pragma once

#include "amazons3compatible.h"

namespace NVB::GUI::Settings::Account {

// The read-only view of a DreamObjects account.
class DreamObjects : public AmazonS3Compatible
{
    Q_OBJECT

public:
    class Add;

    explicit DreamObjects(QWidget* parent = nullptr);
};

} // namespace NVB::GUI::Settings::Account
