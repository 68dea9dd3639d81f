#pragma once

#include "accounts/storagesinfo.h"

namespace NVB::GUI::Settings::Account {

// The read-only view of an account of the OpenStack family.
class OpenStack : public Storages::Info
{
    Q_OBJECT

public:
    class Add;
    class AddContainer;
    class NameValidator;

    // keystoneRows: "Keystone version:" and "Region:"; internalUrlRow: "Use
    // internal URLs:".
    OpenStack(NVL::Cloud::Type type, bool keystoneRows, bool internalUrlRow, QWidget* parent = nullptr);

    static QString keystoneVersion(const QVariant& authType);
};

} // namespace NVB::GUI::Settings::Account
