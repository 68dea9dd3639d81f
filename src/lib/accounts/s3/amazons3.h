#pragma once

#include "amazons3compatible.h"

namespace NVB::GUI::Settings::Account {

// The read-only view of a AmazonS3 account.
class AmazonS3 : public AmazonS3Compatible
{
    Q_OBJECT

public:
    class Add;

    explicit AmazonS3(QWidget* parent = nullptr);
};

} // namespace NVB::GUI::Settings::Account
