#include "mailserverdialog.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>
#include <QVBoxLayout>

#include "core/nvldebug.h"
#include "crypt/cryptns.h"
#include "stores/defaultsettings.h"
#include "wizards/common/emailvalidator.h"

namespace NVB::Console {

MailServerDialog::MailServerDialog(QWidget* parent)
    : QDialog(parent)
    , m_host(new QLineEdit(this))
    , m_port(new QSpinBox(this))
    , m_tls(new QCheckBox(tr("Use TLS (from the start on port 465, else STARTTLS)"), this))
    , m_user(new QLineEdit(this))
    , m_password(new QLineEdit(this))
    , m_sender(new QLineEdit(this))
    , m_error(new QLabel(this))
{
    setWindowTitle(tr("Mail server"));
    m_port->setRange(1, 65535);
    m_password->setEchoMode(QLineEdit::Password);
    m_error->setWordWrap(true);
    const NVB::DefaultSettings* settings = NVB::DefaultSettings::instance();
    if (settings) {
        m_host->setText(settings->value(QStringLiteral("SMTP host")));
        m_port->setValue(qBound(1, settings->value(QStringLiteral("SMTP port")).toInt(), 65535));
        m_tls->setChecked(settings->value(QStringLiteral("SMTP TLS")) == QLatin1String("true"));
        m_user->setText(settings->value(QStringLiteral("SMTP user")));
        m_sender->setText(settings->value(QStringLiteral("SMTP sender")));
        if (!settings->value(QStringLiteral("SMTP password")).isEmpty())
            m_password->setPlaceholderText(tr("unchanged"));
    }
    auto* form = new QFormLayout();
    form->addRow(tr("Server:"), m_host);
    form->addRow(tr("Port:"), m_port);
    form->addRow(QString(), m_tls);
    form->addRow(tr("User name:"), m_user);
    form->addRow(tr("Password:"), m_password);
    form->addRow(tr("Sender address:"), m_sender);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &MailServerDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &MailServerDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(m_error);
    layout->addWidget(buttons);
}

void MailServerDialog::accept()
{
    try {
        NVB::DefaultSettings* settings = NVB::DefaultSettings::instance();
        if (!settings)
            throw tr("The settings cannot be written");
        const QString sender = m_sender->text().trimmed();
        if (!sender.isEmpty() && !NVB::GUI::EmailValidator::isAcceptableList(sender))
            throw tr("The sender address is not an e-mail address");
        const QString host = m_host->text().trimmed();
        if (host.contains(QLatin1Char(' ')) || host.contains(QLatin1Char('/')))
            throw tr("The server must be a host name or an address");
        bool written = settings->setValue(QStringLiteral("SMTP host"), host)
            && settings->setValue(QStringLiteral("SMTP port"), QString::number(m_port->value()))
            && settings->setValue(
                QStringLiteral("SMTP TLS"), m_tls->isChecked() ? QStringLiteral("true") : QStringLiteral("false"))
            && settings->setValue(QStringLiteral("SMTP user"), m_user->text())
            && settings->setValue(QStringLiteral("SMTP sender"), sender);
        if (written && !m_password->text().isEmpty())
            written = settings->setValue(
                QStringLiteral("SMTP password"), SHARED::cryptNS::encrypt_local_password(m_password->text()));
        if (!written)
            throw tr("The settings cannot be written");
    } catch (const QString& error) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << error;
        m_error->setText(QStringLiteral("<font color='red'>%1</font>").arg(error.toHtmlEscaped()));
        return;
    }
    QDialog::accept();
}

} // namespace NVB::Console
