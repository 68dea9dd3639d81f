#pragma once

#include "openstack.h"

namespace NVB::GUI::Settings::Account {

// The read-only view of a OracleCloud account.
class OracleCloud : public OpenStack
{
    Q_OBJECT

public:
    class Add;

    explicit OracleCloud(QWidget* parent = nullptr);
};

} // namespace NVB::GUI::Settings::Account
