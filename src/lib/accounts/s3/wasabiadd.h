#pragma once

#include "amazons3compatibleadd.h"
#include "wasabi.h"

namespace NVB::GUI::Settings::Account {

// The dialog of a Wasabi account: the S3 body with Wasabi's endpoint
// preset and regions.
class Wasabi::Add : public AmazonS3Compatible::Add
{
    Q_OBJECT

public:
    explicit Add(QWidget* parent = nullptr);

protected:
    Storages::AddContainer* addContainerDialog() override;
};

} // namespace NVB::GUI::Settings::Account
