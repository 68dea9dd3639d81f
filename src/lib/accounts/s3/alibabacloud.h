#pragma once

#include "amazons3compatible.h"

namespace NVB::GUI::Settings::Account {

// The read-only view of a AlibabaCloud account.
class AlibabaCloud : public AmazonS3Compatible
{
    Q_OBJECT

public:
    class Add;

    explicit AlibabaCloud(QWidget* parent = nullptr);
};

} // namespace NVB::GUI::Settings::Account
