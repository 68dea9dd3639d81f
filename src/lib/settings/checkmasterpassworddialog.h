#pragma once

#include <QDialog>

class QDialogButtonBox;
class QLineEdit;

namespace NVB::GUI::Settings {

// Asks for the master password; accepts only the right one.
class CheckMasterPasswordDialog : public QDialog
{
    Q_OBJECT
public:
    explicit CheckMasterPasswordDialog(QWidget* parent = nullptr);

    // Whether a master password is set at all.
    static bool isPasswordSet();

    QLineEdit* passwordEdit() const { return m_password; }
    QDialogButtonBox* buttonBox() const { return m_buttons; }

signals:
    // A wrong password was given and refused.
    void refused();

public slots:
    void onDataChanged();
    void onAccept();

private:
    QLineEdit* m_password;
    QDialogButtonBox* m_buttons;
};

} // namespace NVB::GUI::Settings
