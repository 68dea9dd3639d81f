#pragma once

#include "openstack.h"

namespace NVB::GUI::Settings::Account {

// The read-only view of a HPCloud account.
class HPCloud : public OpenStack
{
    Q_OBJECT

public:
    class Add;

    explicit HPCloud(QWidget* parent = nullptr);
};

} // namespace NVB::GUI::Settings::Account
