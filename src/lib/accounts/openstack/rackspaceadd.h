#pragma once

#include "openstackadd.h"
#include "rackspace.h"

namespace NVB::GUI::Settings::Account {

// The dialog of a Rackspace account: the OpenStack body with Rackspace's
// endpoints offered.
class Rackspace::Add : public OpenStack::Add
{
    Q_OBJECT

public:
    explicit Add(QWidget* parent = nullptr);

    static Presets presets();
};

} // namespace NVB::GUI::Settings::Account
