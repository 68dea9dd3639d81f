#pragma once

#include "openstackadd.h"
#include "softlayer.h"

namespace NVB::GUI::Settings::Account {

// The dialog of a SoftLayer account: the OpenStack body with SoftLayer's
// endpoints offered.
class SoftLayer::Add : public OpenStack::Add
{
    Q_OBJECT

public:
    explicit Add(QWidget* parent = nullptr);

    static Presets presets();
};

} // namespace NVB::GUI::Settings::Account
