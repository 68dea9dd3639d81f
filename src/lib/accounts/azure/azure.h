#pragma once

#include "accounts/storagesinfo.h"

namespace NVB::GUI::Settings::Account {

// The read-only view of an Azure Blob account.
class Azure : public Storages::Info
{
    Q_OBJECT

public:
    class Add;
    class AddContainer;
    class Validator;

    explicit Azure(QWidget* parent = nullptr);
};

} // namespace NVB::GUI::Settings::Account
