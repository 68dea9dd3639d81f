#pragma once

#include "accounts/storagesinfo.h"

namespace NVB::GUI::Settings::Account {

// The read-only view of a Backblaze B2 account.
class BackblazeB2 : public Storages::Info
{
    Q_OBJECT

public:
    class Add;
    class AddContainer;
    class Validator;

    explicit BackblazeB2(QWidget* parent = nullptr);
};

} // namespace NVB::GUI::Settings::Account
