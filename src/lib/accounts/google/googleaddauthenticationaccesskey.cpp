#include "googleaddauthenticationaccesskey.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace NVB::GUI::Settings::Account {

Google::Add::AuthenticationAccessKey::AuthenticationAccessKey(QString* accessKey, QString* secretKey, QWidget* parent)
    : QDialog(parent)
    , m_accessKey(accessKey)
    , m_secretKey(secretKey)
    , m_accessKeyEdit(new QLineEdit(*accessKey, this))
    , m_secretKeyEdit(new QLineEdit(*secretKey, this))
    , m_buttons(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this))
{
    setWindowTitle(tr("Authentication with Access and Secret Key"));
    m_secretKeyEdit->setEchoMode(QLineEdit::Password);
    for (QLineEdit* edit : {m_accessKeyEdit, m_secretKeyEdit}) {
        edit->setMinimumWidth(Storages::Add::LineEditWidth);
        connect(edit, &QLineEdit::textChanged, this, &AuthenticationAccessKey::onDataChanged);
    }
    auto* form = new QFormLayout;
    form->addRow(tr("Access Key:"), m_accessKeyEdit);
    form->addRow(tr("Secret Key:"), m_secretKeyEdit);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(m_buttons);
    connect(m_buttons, &QDialogButtonBox::accepted, this, &AuthenticationAccessKey::onAccept);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    onDataChanged();
}

void Google::Add::AuthenticationAccessKey::onDataChanged()
{
    m_buttons->button(QDialogButtonBox::Ok)
        ->setEnabled(!m_accessKeyEdit->text().trimmed().isEmpty() && !m_secretKeyEdit->text().trimmed().isEmpty());
}

void Google::Add::AuthenticationAccessKey::onAccept()
{
    *m_accessKey = m_accessKeyEdit->text().trimmed();
    *m_secretKey = m_secretKeyEdit->text().trimmed();
    accept();
}

} // namespace NVB::GUI::Settings::Account
