#pragma once

#include <QSet>

#include "accounts/storagesaddcontainer.h"
#include "backblazeb2.h"

class QComboBox;

namespace NVB::GUI::Settings::Account {

// "Add New Container" for B2: the name rule, at least 6 characters, no name
// that exists, and the bucket's type.
class BackblazeB2::AddContainer : public Storages::AddContainer
{
    Q_OBJECT

public:
    explicit AddContainer(const QSet<QString>& existing, QWidget* parent = nullptr);

    // "allPrivate" or "allPublic".
    QString type() const;
    QComboBox* typeCombo() const { return m_type; }

protected slots:
    void onDataChanged() override;

private:
    QSet<QString> m_existing;
    QComboBox* m_type;
};

} // namespace NVB::GUI::Settings::Account
