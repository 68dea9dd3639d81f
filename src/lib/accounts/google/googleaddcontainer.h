#pragma once

#include <QSet>

#include "accounts/storagesaddcontainer.h"
#include "google.h"

class QComboBox;

namespace NVB::GUI::Settings::Account {

// "Add New Container" for Google: the name, its location and storage class.
class Google::AddContainer : public Storages::AddContainer
{
    Q_OBJECT

public:
    explicit AddContainer(const QSet<QString>& existing, QWidget* parent = nullptr);

    // The location code ("US", "EUROPE-WEST3", ...) and the storage class
    // ("STANDARD", ...) to create the bucket with.
    QString location() const;
    QString type() const;
    QComboBox* locationCombo() const { return m_location; }
    QComboBox* typeCombo() const { return m_type; }

protected slots:
    void onDataChanged() override;

private:
    QSet<QString> m_existing;
    QComboBox* m_location;
    QComboBox* m_type;
};

} // namespace NVB::GUI::Settings::Account
