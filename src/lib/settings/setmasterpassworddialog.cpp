#include "settings/setmasterpassworddialog.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/nvldebug.h"
#include "crypt/cryptns.h"
#include "stores/defaultsettings.h"

namespace NVB::GUI::Settings {

SetMasterPasswordDialog::SetMasterPasswordDialog(ActionType action, QWidget* parent)
    : QDialog(parent)
    , m_action(action)
    , m_password(new QLineEdit(this))
    , m_confirm(new QLineEdit(this))
    , m_buttons(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this))
{
    auto* layout = new QVBoxLayout(this);
    auto* form = new QFormLayout();
    if (m_action == Change) {
        setWindowTitle(tr("Change master password"));
        m_current = new QLineEdit(this);
        m_current->setPlaceholderText(tr("Enter current password"));
        form->addRow(tr("Current:"), m_current);
        form->addRow(tr("New:"), m_password);
        m_password->setPlaceholderText(tr("Enter new password"));
        m_confirm->setPlaceholderText(tr("Confirm new password"));
    } else {
        setWindowTitle(tr("Set master password"));
        form->addRow(tr("Password:"), m_password);
        m_password->setPlaceholderText(tr("Enter password"));
        m_confirm->setPlaceholderText(tr("Confirm password"));
    }
    form->addRow(tr("Confirm:"), m_confirm);
    layout->addLayout(form);
    if (m_action == Change)
        layout->addWidget(new QLabel(tr("<small>You must enter your current password to make changes.</small>"), this));
    layout->addWidget(m_buttons);
    for (QLineEdit* edit : {m_current, m_password, m_confirm}) {
        if (!edit)
            continue;
        edit->setEchoMode(QLineEdit::Password);
        connect(edit, &QLineEdit::textChanged, this, &SetMasterPasswordDialog::onDataChanged);
    }
    connect(m_buttons, &QDialogButtonBox::accepted, this, &SetMasterPasswordDialog::onAccept);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &SetMasterPasswordDialog::reject);
    onDataChanged();
}

void SetMasterPasswordDialog::onDataChanged()
{
    const bool ok = !m_password->text().isEmpty() && m_password->text() == m_confirm->text()
        && (!m_current || !m_current->text().isEmpty());
    m_buttons->button(QDialogButtonBox::Ok)->setEnabled(ok);
}

void SetMasterPasswordDialog::onAccept()
{
    // OK may be reached by Enter while the button is off.
    if (!m_buttons->button(QDialogButtonBox::Ok)->isEnabled())
        return;
    DefaultSettings* store = DefaultSettings::instance();
    if (m_current && SHARED::cryptNS::encrypt_local_password(m_current->text()) != store->getMasterPassword()) {
        QMessageBox::critical(this, tr("Error"), tr("Specified current password is invalid!"));
        return;
    }
    if (!store->setMasterPassword(SHARED::cryptNS::encrypt_local_password(m_password->text()))) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << QStringLiteral("Cannot store the master password");
        QMessageBox::critical(
            this, tr("Error"), tr("The master password could not be stored in %1.").arg(store->filePath()));
        return;
    }
    accept();
}

} // namespace NVB::GUI::Settings
