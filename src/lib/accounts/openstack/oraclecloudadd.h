#pragma once

#include "openstackadd.h"
#include "oraclecloud.h"

namespace NVB::GUI::Settings::Account {

// The dialog of a OracleCloud account: the OpenStack body with OracleCloud's
// endpoints offered.
class OracleCloud::Add : public OpenStack::Add
{
    Q_OBJECT

public:
    explicit Add(QWidget* parent = nullptr);

    static Presets presets();
};

} // namespace NVB::GUI::Settings::Account
