#pragma once

#include <QModelIndex>

#include "accounts/storagesaddbase.h"
#include "widgets/processdialog.h"

class QDialogButtonBox;
class QLabel;

namespace NVB::GUI::Settings::Account {

// The account dialog of the managed edition for every provider but the local
// file system. The service owns those accounts and their credentials, so the
// dialog shows what the machine uses (name, provider, backup prefix) and says
// who can change it, instead of a form the engine would overwrite.
class MnsEdit : public ProcessDialog, public Storages::AddBase
{
    Q_OBJECT

public:
    explicit MnsEdit(int type, QWidget* parent = nullptr);

    // Opens the dialog on a row of the storage connection model: its id,
    // name, provider and prefix.
    void setItem(const QModelIndex& index);

    int type() const { return m_type; }
    QString displayName() const;
    QString prefix() const;
    QString note() const;
    QDialogButtonBox* buttonBox() const { return m_buttons; }

private:
    void showType(int type);

    int m_type;
    QLabel* m_icon;
    QLabel* m_provider;
    QLabel* m_name;
    QLabel* m_prefix;
    QLabel* m_note;
    QDialogButtonBox* m_buttons;
};

} // namespace NVB::GUI::Settings::Account
