#include "sftpadd.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QFileDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QtConcurrent>

#include "accounts/accountutility.h"
#include "accounts/advanced/advanced.h"
#include "accounts/sshhostkeydialog.h"
#include "cloud/cloudconfig.h"
#include "cloud/ioperation.h"
#include "cloud/knownhosts.h"
#include "cloud/operationerror.h"
#include "cloud/operationmanager.h"
#include "cloud/storageaccountconfigformat.h"
#include "core/nvldebug.h"
#include "crypt/cryptns.h"
#include "models/models.h"

namespace NVB::GUI::Settings::Account {

namespace Column = NVB::GUI::Models::Table::NvbStorageConnectionModelInfo::Column;
namespace Record = NVB::Info::StorageAccountConfigFormat;
namespace Net = NVL::Cloud::Config::Network;

Sftp::Add::Add(QWidget* parent)
    : Storages::Add(NVL::Cloud::Type::Sftp, parent)
{
    setWindowTitle(tr("Add Account"));
    auto* form = new QFormLayout;
    auto edit = [this] {
        auto* line = new QLineEdit(this);
        line->setMinimumWidth(LineEditWidth);
        return line;
    };
    m_displayName = edit();
    m_server = edit();
    m_path = edit();
    m_user = edit();
    m_port = new QSpinBox(this);
    m_port->setRange(1, 65535);
    m_port->setValue(22);
    m_auth = new QComboBox(this);
    m_auth->addItem(tr("Password"));
    m_auth->addItem(tr("Private Key"));
    m_password = edit();
    m_password->setEchoMode(QLineEdit::Password);
    m_password->setPlaceholderText(tr("Enter password"));
    m_keyRow = new QWidget(this);
    auto* keyLayout = new QHBoxLayout(m_keyRow);
    keyLayout->setContentsMargins(0, 0, 0, 0);
    keyLayout->setSpacing(2);
    m_keyPath = new QLineEdit(m_keyRow);
    m_keyPath->setMinimumWidth(LineEditWidth - 60);
    m_import = new QPushButton(tr("Import"), m_keyRow);
    keyLayout->addWidget(m_keyPath, 1);
    keyLayout->addWidget(m_import);
    m_passphrase = edit();
    m_passphrase->setEchoMode(QLineEdit::Password);
    m_passphrase->setPlaceholderText(tr("Enter passphrase"));
    m_keyWatcher = new QFutureWatcher<NVL::Cloud::SshPrivateKey::Loaded>(this);
    m_keepAlive = new QCheckBox(tr("Keep alive"), this);
    m_useProxy = new QCheckBox(tr("Use Proxy"), this);
    m_test = new QPushButton(tr("Test Connnection"), this);

    form->addRow(tr("Display name:"), m_displayName);
    form->addRow(tr("Server:"), m_server);
    form->addRow(tr("Path:"), m_path);
    form->addRow(tr("Port:"), m_port);
    form->addRow(tr("User:"), m_user);
    form->addRow(tr("Authentication:"), m_auth);
    form->addRow(QString(), m_password);
    form->addRow(QString(), m_keyRow);
    form->addRow(QString(), m_passphrase);
    auto* boxes = new QHBoxLayout;
    boxes->addWidget(m_keepAlive);
    boxes->addWidget(m_useProxy);
    boxes->addStretch(1);
    form->addRow(QString(), boxes);
    auto* testRow = new QHBoxLayout;
    testRow->addWidget(m_test);
    testRow->addStretch(1);
    form->addRow(QString(), testRow);
    setProviderLayout(form);

    connect(m_displayName, &QLineEdit::textChanged, this, &Add::onDataChanged);
    for (QLineEdit* line : {m_server, m_path, m_user, m_password, m_keyPath, m_passphrase})
        connect(line, &QLineEdit::textEdited, this, &Add::onCredsReset);
    connect(m_keyWatcher, &QFutureWatcherBase::finished, this, &Add::onKeyLoaded);
    connect(m_port, QOverload<int>::of(&QSpinBox::valueChanged), this, &Add::onCredsReset);
    connect(m_useProxy, &QCheckBox::toggled, this, &Add::onCredsReset);
    connect(m_auth, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &Add::onAuthTypeChanged);
    connect(m_import, &QPushButton::clicked, this, &Add::onSelectPathToPKeyCliked);
    connect(m_test, &QPushButton::clicked, this, &Add::testSessionUnavailable);
    onAuthTypeChanged(Password);
    showPassphrase(false);
}

QString Sftp::Add::privateKey(const QString& path)
{
    return NVL::Cloud::SshPrivateKey::read(path.trimmed()).text;
}

QString Sftp::Add::credential() const
{
    if (m_auth->currentIndex() == Password)
        return m_password->text();
    if (m_keyPath->text().trimmed().isEmpty())
        return m_storedKey;
    return m_keyFrom == m_keyPath->text().trimmed() ? m_keyText : QString();
}

bool Sftp::Add::hasCredential() const
{
    if (m_auth->currentIndex() == Password)
        return !m_password->text().isEmpty();
    return !m_keyPath->text().trimmed().isEmpty() || !m_storedKey.isEmpty();
}

void Sftp::Add::showPassphrase(bool shown)
{
    m_passphrase->setVisible(shown && m_auth->currentIndex() == PrivateKey);
}

void Sftp::Add::withKey(const std::function<void()>& next)
{
    const QString path = m_keyPath->text().trimmed();
    if (m_auth->currentIndex() == Password || path.isEmpty() || path == m_keyFrom) {
        next();
        return;
    }
    if (m_keyWatcher->isRunning()) {
        m_afterKey = next;
        return;
    }
    m_afterKey = next;
    m_keyFrom.clear();
    m_keyText.clear();
    m_keyLoading = path;
    beginLockUI();
    // A FIFO, a device or a hung network mount must not freeze the console.
    m_keyWatcher->setFuture(QtConcurrent::run([path]() { return NVL::Cloud::SshPrivateKey::read(path); }));
}

void Sftp::Add::onKeyLoaded()
{
    endLockUI();
    const NVL::Cloud::SshPrivateKey::Loaded loaded = m_keyWatcher->result();
    const std::function<void()> next = std::move(m_afterKey);
    m_afterKey = nullptr;
    if (m_keyLoading != m_keyPath->text().trimmed())
        return;
    if (!loaded.error.isEmpty()) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << loaded.error;
        m_tested = false;
        onDataChanged();
        setErrorMessage(loaded.error);
        return;
    }
    m_keyText = loaded.text;
    m_keyFrom = m_keyLoading;
    m_keyEncrypted = loaded.encrypted;
    showPassphrase(m_keyEncrypted);
    onDataChanged();
    if (m_keyEncrypted && m_passphrase->text().isEmpty()) {
        setErrorMessage(tr("The private key is encrypted: enter its passphrase."));
        m_passphrase->setFocus();
        return;
    }
    if (next)
        next();
}

void Sftp::Add::onAuthTypeChanged(int index)
{
    const bool password = index == Password;
    m_password->setVisible(password);
    m_keyRow->setVisible(!password);
    showPassphrase(!password && (m_keyEncrypted || !m_passphrase->text().isEmpty()));
    onCredsReset();
}

void Sftp::Add::onSelectPathToPKeyCliked()
{
    const QString chosen = QFileDialog::getOpenFileName(this, tr("Private key"), m_keyPath->text().trimmed());
    if (chosen.isEmpty())
        return;
    m_keyPath->setText(chosen);
    onCredsReset();
    withKey([] {});
}

void Sftp::Add::onCredsReset()
{
    m_tested = false;
    onClearErrorMessage();
    onDataChanged();
}

void Sftp::Add::onDataChanged()
{
    const bool login = !m_server->text().trimmed().isEmpty() && !m_path->text().trimmed().isEmpty()
        && !m_user->text().trimmed().isEmpty() && hasCredential();
    okButton()->setEnabled(login && !m_displayName->text().trimmed().isEmpty());
    m_test->setEnabled(login);
}

QMap<QString, QVariant> Sftp::Add::cloudConfig() const
{
    QMap<QString, QVariant> config = Storages::Add::cloudConfig();
    config.insert(Net::Address, m_server->text().trimmed());
    config.insert(Net::Port, m_port->value());
    config.insert(Net::KeepAlive, m_keepAlive->isChecked());
    config.insert(Net::UseProxy, m_useProxy->isChecked());
    config.insert(Net::Sftp::Path, AccountUtility::removeTrailingCharacterAfterSlash(m_path->text().trimmed()));
    config.insert(Net::Sftp::User, m_user->text().trimmed());
    if (m_auth->currentIndex() == Password)
        config.insert(Net::Sftp::Password, m_password->text());
    else {
        config.insert(Net::Sftp::PrivateKey, credential());
        config.insert(Net::Sftp::Passphrase, m_passphrase->text());
    }
    return config;
}

bool Sftp::Add::canRequestPrefixes() const
{
    return m_tested;
}

void Sftp::Add::lockWidgetsAfterError(bool locked)
{
    Storages::Add::lockWidgetsAfterError(locked);
    if (locked)
        m_tested = false;
}

void Sftp::Add::testSessionUnavailable()
{
    // The edit shows the path exactly as it is tested and saved.
    const QString path = AccountUtility::removeTrailingCharacterAfterSlash(m_path->text().trimmed());
    if (path != m_path->text())
        m_path->setText(path);
    withKey([this] { startTest(); });
}

void Sftp::Add::startTest()
{
    beginLockUI();
    dropOperation();
    const auto operation
        = NVL::Cloud::OperationManager::instance().listing(cloudConfig(), QString(), QStringLiteral("/"), QString(), 1);
    if (!operation) {
        endLockUI();
        setErrorMessage(tr("Can't load containers!"));
        NVL::NvlDebug(QStringLiteral("NVB")).warning()
            << QStringLiteral("Can't test sftp. Doesn't create an operation.");
        return;
    }
    setOperation(operation);
    connect(operation.data(), &NVL::Cloud::IOperation::finished, this, &Add::onTestFinished);
    operation->run();
}

void Sftp::Add::onTestFinished()
{
    auto* finished = qobject_cast<NVL::Cloud::IOperation*>(sender());
    const QSharedPointer<NVL::Cloud::IOperation> held = operation();
    if (!held || finished != held.data()) {
        // An answer for a test this dialog already gave up on.
        if (finished && !finished->isRemoved())
            finished->remove();
        return;
    }
    setOperation({});
    held->remove();
    endLockUI();
    if (held->isError()) {
        m_tested = false;
        NVL::NvlDebug(QStringLiteral("NVB")).warning()
            << QStringLiteral("Operation return error: err(%1): %2").arg(held->errorCode()).arg(held->errorMessage());
        lockWidgetsAfterError(true);
        setErrorMessage(held->errorMessage());
        const QMap<QString, QVariant> refused = held->cloudConfig();
        // An unknown key (none on record) may be confirmed; a changed one
        // never is from here: its warning stays on screen.
        if (held->errorCode() == NVL::Cloud::OperationError::HostKeyNotTrusted
            && refused.contains(Net::Sftp::OfferedHostKey) && !refused.contains(Net::Sftp::KnownHostKeyFingerprint))
            offerHostKey(refused);
        return;
    }
    m_tested = true;
    onDataChanged();
    setSuccessMessage(tr("Connection Successful"));
}

void Sftp::Add::offerHostKey(const QMap<QString, QVariant>& refused)
{
    const QString server
        = NVL::Cloud::KnownHosts::hostPattern(refused.value(Net::Address).toString(), refused.value(Net::Port).toInt());
    const QString key = refused.value(Net::Sftp::OfferedHostKey).toString();
    SshHostKeyDialog question(server, key.section(QLatin1Char(' '), 0, 0),
        refused.value(Net::Sftp::OfferedHostKeyFingerprint).toString(), this);
    if (question.exec() != QDialog::Accepted)
        return;
    const QString error = NVL::Cloud::KnownHosts::accept(refused);
    if (!error.isEmpty()) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << error;
        setErrorMessage(error);
        return;
    }
    NVL::NvlDebug(QStringLiteral("NVB")).info()
        << QStringLiteral("Host key %1 accepted for %2")
               .arg(refused.value(Net::Sftp::OfferedHostKeyFingerprint).toString(), server);
    testSessionUnavailable();
}

void Sftp::Add::saveConfig()
{
    withKey([this] {
        try {
            QJsonObject record;
            record.insert(Record::Network::Address, m_server->text().trimmed());
            record.insert(Record::Network::Port, m_port->value());
            record.insert(Record::Network::KeepAlive, m_keepAlive->isChecked());
            record.insert(Record::Network::UseProxy, m_useProxy->isChecked());
            record.insert(Record::Network::Ftp::Path,
                AccountUtility::removeTrailingCharacterAfterSlash(m_path->text().trimmed()));
            record.insert(Record::Network::Ftp::User, m_user->text().trimmed());
            if (m_auth->currentIndex() == Password) {
                record.insert(
                    Record::Network::Ftp::Password, SHARED::cryptNS::encrypt_local_password(m_password->text()));
            } else {
                record.insert(
                    Record::Network::Ftp::Sftp::PrivateKey, SHARED::cryptNS::encrypt_local_password(credential()));
                // The stored form keeps a key's passphrase in the password.
                if (!m_passphrase->text().isEmpty())
                    record.insert(
                        Record::Network::Ftp::Password, SHARED::cryptNS::encrypt_local_password(m_passphrase->text()));
            }
            QString error;
            if (!updateAccount(record, m_displayName->text().trimmed(), error))
                throw error;
        } catch (const QString& text) {
            NVL::NvlDebug(QStringLiteral("NVB")).warning() << text;
            setErrorMessage(text);
        }
    });
}

void Sftp::Add::onAccept()
{
    saveConfig();
}

void Sftp::Add::onSetItem(const QModelIndex& index)
{
    if (!index.isValid()) {
        endLockUI();
        return;
    }
    const QAbstractItemModel* model = index.model();
    const QJsonObject record = model->index(index.row(), Column::DetailParams, index.parent()).data().toJsonObject();
    const QString id = model->index(index.row(), Column::ID, index.parent()).data().toString();
    const QSignalBlocker blockAuth(m_auth);
    m_displayName->setText(model->index(index.row(), Column::DisplayName, index.parent()).data().toString());
    m_server->setText(record.value(Record::Network::Address).toString());
    m_port->setValue(record.value(Record::Network::Port).toInt(22));
    m_keepAlive->setChecked(record.value(Record::Network::KeepAlive).toBool());
    {
        const QSignalBlocker blockProxy(m_useProxy);
        m_useProxy->setChecked(record.value(Record::Network::UseProxy).toBool());
    }
    m_path->setText(record.value(Record::Network::Ftp::Path).toString());
    m_user->setText(record.value(Record::Network::Ftp::User).toString());
    const bool withKey = record.contains(Record::Network::Ftp::Sftp::PrivateKey);
    m_auth->setCurrentIndex(withKey ? PrivateKey : Password);
    onAuthTypeChanged(m_auth->currentIndex());
    endLockUI();
    try {
        if (withKey) {
            m_storedKey = SHARED::cryptNS::decrypt_local_password(
                record.value(Record::Network::Ftp::Sftp::PrivateKey).toString());
            m_keyPath->clear();
            if (record.contains(Record::Network::Ftp::Password))
                m_passphrase->setText(
                    SHARED::cryptNS::decrypt_local_password(record.value(Record::Network::Ftp::Password).toString()));
            m_keyEncrypted = NVL::Cloud::SshPrivateKey::isEncrypted(m_storedKey);
            showPassphrase(m_keyEncrypted);
        } else {
            m_password->setText(
                SHARED::cryptNS::decrypt_local_password(record.value(Record::Network::Ftp::Password).toString()));
        }
    } catch (const QString&) {
        NVL::NvlDebug(QStringLiteral("NVB")).error()
            << QStringLiteral("Can't decrypt secret Key in account load. ID: %1").arg(id);
        onDataChanged();
        setErrorMessage(tr("Can't decrypt secret Key in account load."));
        return;
    }
    onDataChanged();
    testSessionUnavailable();
}

void Sftp::Add::onAdvancedClicked()
{
    onClearErrorMessage();
    Advanced advanced(*this, !canRequestPrefixes(), this);
    if (advanced.exec() == QDialog::Accepted)
        setPrefix(advanced.prefix());
}

} // namespace NVB::GUI::Settings::Account
