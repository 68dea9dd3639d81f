#pragma once

#include "amazons3compatible.h"

namespace NVB::GUI::Settings::Account {

// The read-only view of a AmazoneS3Chine account.
class AmazoneS3Chine : public AmazonS3Compatible
{
    Q_OBJECT

public:
    class Add;

    explicit AmazoneS3Chine(QWidget* parent = nullptr);
};

} // namespace NVB::GUI::Settings::Account
