#pragma once

#include "amazones3chine.h"
#include "amazons3compatibleadd.h"

namespace NVB::GUI::Settings::Account {

// The dialog of a AmazoneS3Chine account: the S3 body with AmazoneS3Chine's endpoint
// preset and regions.
class AmazoneS3Chine::Add : public AmazonS3Compatible::Add
{
    Q_OBJECT

public:
    explicit Add(QWidget* parent = nullptr);

protected:
    Storages::AddContainer* addContainerDialog() override;
};

} // namespace NVB::GUI::Settings::Account
