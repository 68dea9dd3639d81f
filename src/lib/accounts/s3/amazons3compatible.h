#pragma once

#include "accounts/storagesinfo.h"

namespace NVB::GUI::Settings::Account {

// The read-only view of an account of the S3 family.
class AmazonS3Compatible : public Storages::Info
{
    Q_OBJECT

public:
    class Add;
    class AddContainer;
    class AdvancedStorage;
    class Validator;

    AmazonS3Compatible(NVL::Cloud::Type type, bool showEndpoint, QWidget* parent = nullptr);
};

} // namespace NVB::GUI::Settings::Account
