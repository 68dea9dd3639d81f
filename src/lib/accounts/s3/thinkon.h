#pragma once

#include "amazons3compatible.h"

namespace NVB::GUI::Settings::Account {

// The read-only view of a ThinkOn account.
class ThinkOn : public AmazonS3Compatible
{
    Q_OBJECT

public:
    class Add;

    explicit ThinkOn(QWidget* parent = nullptr);
};

} // namespace NVB::GUI::Settings::Account
