#include "settings/proxydialog.h"

#include <QDialogButtonBox>
#include <QEvent>
#include <QFormLayout>
#include <QGroupBox>
#include <QIntValidator>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "core/nvldebug.h"
#include "crypt/cryptns.h"
#include "stores/proxydefines.h"

namespace NVB::GUI::Settings {

namespace {

constexpr int MinPort = 1;
constexpr int MaxPort = 65535;

} // namespace

const QString ProxyDialog::PasswordMask = QStringLiteral("********");

ProxyDialog::ProxyDialog(bool withChoice, QWidget* parent)
    : QDialog(parent)
    , m_host(new QLineEdit(this))
    , m_port(new QLineEdit(this))
    , m_authentication(new QGroupBox(tr("Use authentication"), this))
    , m_user(new QLineEdit(this))
    , m_password(new QLineEdit(this))
    , m_buttons(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this))
{
    setWindowTitle(tr("Proxy settings"));
    auto* layout = new QVBoxLayout(this);
    auto* group = new QGroupBox(tr("Web Proxy (HTTP) configuration"), this);
    auto* groupLayout = new QVBoxLayout(group);
    if (withChoice) {
        m_noProxy = new QRadioButton(tr("Do not use proxy"), group);
        m_manual = new QRadioButton(tr("Manual proxy configuration"), group);
        groupLayout->addWidget(m_noProxy);
        groupLayout->addWidget(m_manual);
        connect(m_noProxy, &QRadioButton::clicked, this, &ProxyDialog::onNoProxyRadioButtonClicked);
        connect(m_manual, &QRadioButton::clicked, this, &ProxyDialog::onManualProxyRadioButtonClicked);
    }
    auto* address = new QFormLayout();
    address->addRow(tr("Hostname"), m_host);
    // Digits only; the range is checked on OK, with a message, not by
    // refusing keys.
    m_port->setValidator(new QIntValidator(0, 99999, m_port));
    address->addRow(tr("Port"), m_port);
    groupLayout->addLayout(address);
    m_authentication->setCheckable(true);
    auto* login = new QFormLayout(m_authentication);
    login->addRow(tr("Username:"), m_user);
    m_password->setEchoMode(QLineEdit::Password);
    login->addRow(tr("Password:"), m_password);
    groupLayout->addWidget(m_authentication);
    layout->addWidget(group);
    layout->addWidget(m_buttons);

    m_password->installEventFilter(this);
    connect(m_authentication, &QGroupBox::toggled, this, &ProxyDialog::authanticationFormEnable);
    for (QLineEdit* edit : {m_host, m_port, m_user, m_password})
        connect(edit, &QLineEdit::textChanged, this, &ProxyDialog::onDataChanged);
    connect(m_authentication, &QGroupBox::toggled, this, &ProxyDialog::onDataChanged);
    connect(m_buttons, &QDialogButtonBox::accepted, this, &ProxyDialog::onAccept);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &ProxyDialog::reject);
    updateProxySettings();
}

void ProxyDialog::updateProxySettings()
{
    const auto settings = defines::ProxyDefines::proxySettings();
    if (m_manual) {
        m_manual->setChecked(settings.enabled);
        m_noProxy->setChecked(!settings.enabled);
    }
    m_host->setText(settings.host);
    m_port->setText(settings.port > 0 ? QString::number(settings.port) : QString());
    m_authentication->setChecked(settings.useAuthentication);
    m_user->setText(settings.user);
    m_password->setText(settings.user.isEmpty() ? QString() : PasswordMask);
    updateEnabledState();
}

bool ProxyDialog::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_password && event->type() == QEvent::FocusIn && m_password->text() == PasswordMask)
        m_password->clear();
    return QDialog::eventFilter(watched, event);
}

void ProxyDialog::onAccept()
{
    bool ok = false;
    const int port = m_port->text().toInt(&ok);
    const bool manual = !m_manual || m_manual->isChecked();
    // With the proxy switched off, the address does not matter and is kept
    // as it stands.
    if (manual && (!ok || port < MinPort || port > MaxPort)) {
        QMessageBox::warning(
            this, tr("Warning!"), tr("Port must be in the range from %1 to %2.").arg(MinPort).arg(MaxPort));
        return;
    }
    saveProxySettings();
    accept();
}

void ProxyDialog::saveProxySettings()
{
    auto settings = defines::ProxyDefines::proxySettings();
    settings.enabled = !m_manual || m_manual->isChecked();
    settings.host = m_host->text().trimmed();
    settings.port = m_port->text().toInt();
    settings.useAuthentication = m_authentication->isChecked();
    settings.user = m_user->text().trimmed();
    if (settings.user.isEmpty()) {
        settings.useAuthentication = false;
        settings.passwordChanged = false;
        settings.password.clear();
    } else if (m_password->text() != PasswordMask) {
        settings.passwordChanged = true;
        settings.password = SHARED::cryptNS::encrypt_local_password(m_password->text());
    }
    if (!defines::ProxyDefines::setProxySettings(settings))
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << QStringLiteral("Cannot store the proxy settings");
}

void ProxyDialog::authanticationFormEnable(bool enabled)
{
    m_user->setEnabled(enabled);
    m_password->setEnabled(enabled);
}

void ProxyDialog::onNoProxyRadioButtonClicked()
{
    updateEnabledState();
    onDataChanged();
}

void ProxyDialog::onManualProxyRadioButtonClicked()
{
    updateEnabledState();
    onDataChanged();
}

void ProxyDialog::updateEnabledState()
{
    const bool manual = !m_manual || m_manual->isChecked();
    m_host->setEnabled(manual);
    m_port->setEnabled(manual);
    m_authentication->setEnabled(manual);
    authanticationFormEnable(manual && m_authentication->isChecked());
    onDataChanged();
}

void ProxyDialog::onDataChanged()
{
    const bool manual = !m_manual || m_manual->isChecked();
    const bool complete = !manual
        || (!m_host->text().trimmed().isEmpty() && !m_port->text().isEmpty()
            && (!m_authentication->isChecked() || !m_user->text().trimmed().isEmpty()));
    m_buttons->button(QDialogButtonBox::Ok)->setEnabled(complete);
}

} // namespace NVB::GUI::Settings
