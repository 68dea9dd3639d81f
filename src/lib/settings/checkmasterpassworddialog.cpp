#include "settings/checkmasterpassworddialog.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>

#include "crypt/cryptns.h"
#include "stores/defaultsettings.h"

namespace NVB::GUI::Settings {

CheckMasterPasswordDialog::CheckMasterPasswordDialog(QWidget* parent)
    : QDialog(parent)
    , m_password(new QLineEdit(this))
    , m_buttons(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this))
{
    setWindowTitle(QApplication::applicationDisplayName());
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(
        QStringLiteral("<table><tr><td>%1</td></tr><tr><td>%2</td></tr></table>")
            .arg(tr("Application is protected by master password. Please enter "), tr("the password below:")),
        this));
    m_password->setEchoMode(QLineEdit::Password);
    layout->addWidget(m_password);
    layout->addWidget(m_buttons);
    connect(m_password, &QLineEdit::textEdited, this, &CheckMasterPasswordDialog::onDataChanged);
    connect(m_buttons, &QDialogButtonBox::accepted, this, &CheckMasterPasswordDialog::onAccept);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &CheckMasterPasswordDialog::reject);
    onDataChanged();
}

bool CheckMasterPasswordDialog::isPasswordSet()
{
    return !DefaultSettings::instance()->getMasterPassword().isEmpty();
}

void CheckMasterPasswordDialog::onDataChanged()
{
    m_buttons->button(QDialogButtonBox::Ok)->setEnabled(!m_password->text().isEmpty());
}

void CheckMasterPasswordDialog::onAccept()
{
    if (SHARED::cryptNS::encrypt_local_password(m_password->text())
        == DefaultSettings::instance()->getMasterPassword()) {
        accept();
        return;
    }
    QMessageBox::critical(this, tr("Error"), tr("Specified password is invalid!"));
    m_password->setFocus();
    m_password->selectAll();
    emit refused();
}

} // namespace NVB::GUI::Settings
