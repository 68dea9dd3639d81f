#pragma once

#include "openstack.h"

namespace NVB::GUI::Settings::Account {

// The read-only view of a SoftLayer account.
class SoftLayer : public OpenStack
{
    Q_OBJECT

public:
    class Add;

    explicit SoftLayer(QWidget* parent = nullptr);
};

} // namespace NVB::GUI::Settings::Account
