#pragma once

#include "openstack.h"

namespace NVB::GUI::Settings::Account {

// The read-only view of a Rackspace account.
class Rackspace : public OpenStack
{
    Q_OBJECT

public:
    class Add;

    explicit Rackspace(QWidget* parent = nullptr);
};

} // namespace NVB::GUI::Settings::Account
