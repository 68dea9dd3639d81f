#pragma once

#include <QSet>

#include "accounts/storagesaddcontainer.h"
#include "openstack.h"

namespace NVB::GUI::Settings::Account {

// "Add New Container" for Swift: the name validator and no name that exists.
class OpenStack::AddContainer : public Storages::AddContainer
{
    Q_OBJECT

public:
    explicit AddContainer(const QSet<QString>& existing, QWidget* parent = nullptr);

protected slots:
    void onDataChanged() override;

private:
    QSet<QString> m_existing;
};

} // namespace NVB::GUI::Settings::Account
