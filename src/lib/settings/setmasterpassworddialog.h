#pragma once

#include <QDialog>

class QDialogButtonBox;
class QLineEdit;

namespace NVB::GUI::Settings {

// Sets a first master password, or changes it after the current one was
// given. Only the enciphered form is ever stored or compared.
class SetMasterPasswordDialog : public QDialog
{
    Q_OBJECT
public:
    enum ActionType { Set = 0, Change = 1 };

    explicit SetMasterPasswordDialog(ActionType action, QWidget* parent = nullptr);

    QLineEdit* currentEdit() const { return m_current; }
    QLineEdit* passwordEdit() const { return m_password; }
    QLineEdit* confirmEdit() const { return m_confirm; }
    QDialogButtonBox* buttonBox() const { return m_buttons; }

public slots:
    void onDataChanged();
    void onAccept();

private:
    ActionType m_action;
    QLineEdit* m_current = nullptr;
    QLineEdit* m_password;
    QLineEdit* m_confirm;
    QDialogButtonBox* m_buttons;
};

} // namespace NVB::GUI::Settings
