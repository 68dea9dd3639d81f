#pragma once

#include "accounts/storagesadd.h"
#include "local.h"

class QLineEdit;
class QToolButton;

namespace NVB::GUI::Settings::Account {

// The dialog of a File System account: a folder on this computer. There is
// nothing to log in to, so the folder is made when the account is saved.
class Local::Add : public Storages::Add
{
    Q_OBJECT

public:
    explicit Add(QWidget* parent = nullptr);

    QMap<QString, QVariant> cloudConfig() const override;
    bool canRequestPrefixes() const override;

    QLineEdit* displayNameEdit() const { return m_displayName; }
    QLineEdit* pathEdit() const { return m_path; }
    QToolButton* browseButton() const { return m_browse; }
    // The folder the backups of this computer go to.
    QString backupFolder() const;

protected slots:
    void onAccept() override;
    void onSetItem(const QModelIndex& index) override;
    void onAdvancedClicked() override;

private slots:
    void onSelectPathCliked();
    void onDataChanged();

private:
    // The typed path, trimmed, with one final slash.
    QString normalizedPath() const;

    QLineEdit* m_displayName;
    QLineEdit* m_path;
    QToolButton* m_browse;
};

} // namespace NVB::GUI::Settings::Account
