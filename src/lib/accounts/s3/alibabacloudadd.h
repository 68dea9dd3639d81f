#pragma once

#include "alibabacloud.h"
#include "amazons3compatibleadd.h"

namespace NVB::GUI::Settings::Account {

// The dialog of a AlibabaCloud account: the S3 body with AlibabaCloud's endpoint
// preset and regions.
class AlibabaCloud::Add : public AmazonS3Compatible::Add
{
    Q_OBJECT

public:
    explicit Add(QWidget* parent = nullptr);

protected:
    Storages::AddContainer* addContainerDialog() override;
};

} // namespace NVB::GUI::Settings::Account
