#include "sshhostkeydialog.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace NVB::GUI::Settings::Account {

SshHostKeyDialog::SshHostKeyDialog(
    const QString& server, const QString& keyType, const QString& fingerprint, QWidget* parent)
    : QDialog(parent)
{
    setWindowTitle(tr("Unknown host key"));
    m_text = tr("The authenticity of host %1 can't be established.\n%2 key fingerprint is %3.\n\n"
                "Accept the key only if the server's administrator confirms this fingerprint.")
                 .arg(server, keyType, fingerprint);
    auto* layout = new QVBoxLayout(this);
    // Plain text: the host name and key come from the network.
    auto* label = new QLabel(m_text, this);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setMinimumWidth(420);
    layout->addWidget(label);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    m_accept = buttons->addButton(tr("&Accept"), QDialogButtonBox::AcceptRole);
    buttons->button(QDialogButtonBox::Cancel)->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
}

QString SshHostKeyDialog::text() const
{
    return m_text;
}

} // namespace NVB::GUI::Settings::Account
