#pragma once

#include <QSet>

#include "accounts/storagesaddcontainer.h"
#include "azure.h"

class QComboBox;

namespace NVB::GUI::Settings::Account {

// "Add New Container" for Azure: the validator, who may read it ("Access
// Control:"), and no name that exists.
class Azure::AddContainer : public Storages::AddContainer
{
    Q_OBJECT

public:
    explicit AddContainer(const QSet<QString>& existing, QWidget* parent = nullptr);

    // "private", "blob" or "container".
    QString access() const;
    QComboBox* accessCombo() const { return m_access; }

protected slots:
    void onDataChanged() override;

private:
    QSet<QString> m_existing;
    QComboBox* m_access;
};

} // namespace NVB::GUI::Settings::Account
