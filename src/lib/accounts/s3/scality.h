#pragma once

#include "amazons3compatible.h"

namespace NVB::GUI::Settings::Account {

// The read-only view of a Scality account.
class Scality : public AmazonS3Compatible
{
    Q_OBJECT

public:
    class Add;

    explicit Scality(QWidget* parent = nullptr);
};

} // namespace NVB::GUI::Settings::Account
