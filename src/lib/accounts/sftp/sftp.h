#pragma once

#include "accounts/storagesinfo.h"

namespace NVB::GUI::Settings::Account {

// The read-only view of an SFTP account.
class Sftp : public Storages::Info
{
    Q_OBJECT

public:
    class Add;

    explicit Sftp(QWidget* parent = nullptr);
};

} // namespace NVB::GUI::Settings::Account
