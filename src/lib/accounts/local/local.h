#pragma once

#include "accounts/storagesinfo.h"

namespace NVB::GUI::Settings::Account {

// The read-only view of a File System account.
class Local : public Storages::Info
{
    Q_OBJECT

public:
    class Add;

    explicit Local(QWidget* parent = nullptr);
};

} // namespace NVB::GUI::Settings::Account
