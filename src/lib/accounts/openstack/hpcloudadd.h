#pragma once

#include "hpcloud.h"
#include "openstackadd.h"

namespace NVB::GUI::Settings::Account {

// The dialog of a HPCloud account: the OpenStack body with HPCloud's
// endpoints offered.
class HPCloud::Add : public OpenStack::Add
{
    Q_OBJECT

public:
    explicit Add(QWidget* parent = nullptr);

    static Presets presets();
};

} // namespace NVB::GUI::Settings::Account
