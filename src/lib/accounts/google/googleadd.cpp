#include "googleadd.h"

#include <QComboBox>
#include <QFormLayout>
#include <QFutureWatcher>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QSet>
#include <QToolButton>
#include <QtConcurrent>

#include "accounts/advanced/advancedstorage.h"
#include "app/guiconfig.h"
#include "app/icons/iconmanager.h"
#include "cloud/cloudconfig.h"
#include "cloud/containerparams/googlestorage.h"
#include "cloud/operationmanager.h"
#include "cloud/operations/listcontainers.h"
#include "cloud/providers/googleclient.h"
#include "cloud/storageaccountconfigformat.h"
#include "core/nvldebug.h"
#include "crypt/cryptns.h"
#include "googleaddauthenticatioinstallapp.h"
#include "googleaddauthenticationaccesskey.h"
#include "googleaddauthenticationaccount.h"
#include "googleaddcontainer.h"

namespace NVB::GUI::Settings::Account {

namespace Record = NVB::Info::StorageAccountConfigFormat;
namespace GoogleRecord = NVB::Info::StorageAccountConfigFormat::Cloud::GoogleStorage;
namespace G = NVL::Cloud::Config::GoogleStorage;
namespace Http = NVL::Cloud::Api::Config::Http;

namespace {

// The record's AuthType for a combo index, and back.
int authTypeOf(int method)
{
    return method == Google::Add::ServiceAccount ? 1 : method == Google::Add::InstalledApp ? 2 : 0;
}

int methodOf(int authType)
{
    return authType == 1 ? Google::Add::ServiceAccount
        : authType == 2  ? Google::Add::InstalledApp
                         : Google::Add::AccessKey;
}

QString encipher(const QString& text)
{
    return SHARED::cryptNS::encrypt_local_password(text);
}

QString decipher(const QJsonObject& record, const QString& key)
{
    return SHARED::cryptNS::decrypt_local_password(record.value(key).toString());
}

} // namespace

Google::Add::Add(QWidget* parent)
    : BucketAdd(NVL::Cloud::Type::GoogleStorage, parent)
    , m_displayName(new QLineEdit(this))
    , m_authentication(new QComboBox(this))
    , m_settings(new QToolButton(this))
{
    m_displayName->setMinimumWidth(LineEditWidth);
    m_authentication->addItem(tr("Access and Secret Key"));
    m_authentication->addItem(tr("OAuth 2.0 (Installed Application)"));
    m_authentication->addItem(tr("OAuth 2.0 (Service Account)"));
    m_authentication->setCurrentIndex(-1);
    m_settings->setIcon(IconManager::icon(IconManager::Settings));
    m_settings->setStyleSheet(NVB::GUI::Config::ToolButton::StyleSheet);
    m_settings->setToolTip(tr("Authentication settings"));
    m_settings->setEnabled(false);

    auto* form = new QFormLayout;
    form->addRow(tr("Display Name:"), m_displayName);
    auto* authRow = new QHBoxLayout;
    authRow->setSpacing(2);
    authRow->addWidget(m_authentication, 1);
    authRow->addWidget(m_settings);
    form->addRow(tr("Authentication:"), authRow);
    form->addRow(tr("Bucket:"), bucketRow());
    setProviderLayout(form);

    connect(m_displayName, &QLineEdit::textChanged, this, &Add::onDataChanged);
    connect(
        m_authentication, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &Add::onAuthenticationTypeChanged);
    connect(m_settings, &QToolButton::clicked, this, &Add::onAuthenticationSettingsClicked);
    connect(bucketCombo(), QOverload<int>::of(&QComboBox::currentIndexChanged), this, &Add::onDataChanged);
    connect(addBucketButton(), &QToolButton::clicked, this, &Add::onAddBucketClicked);
}

Google::Add::~Add()
{
    // A trade still under way has nobody left to hand its token to.
    m_exchange.cancel();
}

void Google::Add::refreshTokenInstalledApp(const QByteArray& code)
{
    m_exchange.cancel();
    m_exchange = NVL::Cloud::CancelToken();
    const NVL::Cloud::CancelToken cancel = m_exchange;
    const QMap<QString, QVariant> config = cloudConfig();
    auto* watcher = new QFutureWatcher<NVL::Cloud::OperationResult>(this);
    connect(watcher, &QFutureWatcherBase::finished, this, [this, watcher, cancel]() {
        watcher->deleteLater();
        if (cancel.isCancelled())
            return;
        m_trading = false;
        const NVL::Cloud::OperationResult result = watcher->result();
        endLockUI();
        if (result.isError()) {
            // The form's own update clears messages, so it goes first.
            onDataChanged();
            operationErrorHandler(result.errorCode, result.errorMessage);
            return;
        }
        NVL::NvlDebug(QStringLiteral("NVB")).info() << QStringLiteral("Refresh token: obtained");
        m_refreshToken = result.config.value(G::Auth_InstalledApplication::RefreshToken).toString();
        m_code.clear();
        onDataChanged();
        loadContainers();
    });
    m_trading = true;
    beginLockUI();
    process(true);
    // The manager's workers, which the application stops before the
    // network libraries' own exit cleanup.
    watcher->setFuture(QtConcurrent::run(NVL::Cloud::OperationManager::instance().threadPool(),
        [config, code, cancel]() { return NVL::Cloud::GoogleClient().refreshTokenFor(config, code, cancel); }));
}

bool Google::Add::mayLoadContainers() const
{
    // A code being traded now would be traded twice, and a code is good once.
    return !m_trading;
}

bool Google::Add::editCredentials(int method)
{
    switch (method) {
    case AccessKey:
        return AuthenticationAccessKey(&m_accessKey, &m_secretKey, this).exec() == QDialog::Accepted;
    case ServiceAccount:
        return AuthenticationAccount(&m_projectId, &m_serviceAccount, &m_privateKey, this).exec() == QDialog::Accepted;
    case InstalledApp: {
        const QString before = m_code;
        AuthenticatioInstallApp dialog(&m_appProjectId, &m_code, this);
        if (dialog.exec() != QDialog::Accepted)
            return false;
        // A new code replaces the account's sign-in; the refresh token of
        // the old one must not be used with it.
        if (m_code != before || m_refreshToken.isEmpty()) {
            m_refreshToken.clear();
            m_codeVerifier = dialog.codeVerifier();
            m_redirectUri = dialog.redirectUri();
            // Queued, so that the combo's own handling of this choice
            // (onCredsReset) has run before the trade's answer can come.
            if (!m_code.trimmed().isEmpty())
                QMetaObject::invokeMethod(
                    this, [this]() { refreshTokenInstalledApp(m_code.toLatin1()); }, Qt::QueuedConnection);
        }
        return true;
    }
    default:
        return false;
    }
}

void Google::Add::onAuthenticationTypeChanged(int index)
{
    if (index < 0)
        return;
    if (editCredentials(index)) {
        m_settings->setEnabled(true);
        onCredsReset();
    } else {
        const QSignalBlocker block(m_authentication);
        m_authentication->setCurrentIndex(-1);
        m_settings->setEnabled(false);
    }
    onDataChanged();
}

void Google::Add::onAuthenticationSettingsClicked()
{
    if (editCredentials(m_authentication->currentIndex())) {
        onCredsReset();
        onDataChanged();
    }
}

bool Google::Add::credentialsComplete() const
{
    switch (m_authentication->currentIndex()) {
    case AccessKey:
        return !m_accessKey.isEmpty() && !m_secretKey.isEmpty();
    case ServiceAccount:
        return !m_projectId.isEmpty() && !m_serviceAccount.isEmpty() && !m_privateKey.isEmpty();
    case InstalledApp:
        return !m_appProjectId.isEmpty() && (!m_code.isEmpty() || !m_refreshToken.isEmpty());
    default:
        return false;
    }
}

void Google::Add::onDataChanged()
{
    onClearErrorMessage();
    const bool filled = !m_displayName->text().trimmed().isEmpty() && credentialsComplete();
    updateBuckets(filled);
}

void Google::Add::onCredsReset()
{
    m_containers.clear();
    resetBuckets();
}

QMap<QString, QVariant> Google::Add::cloudConfig() const
{
    QMap<QString, QVariant> config = Storages::Add::cloudConfig();
    const int method = m_authentication->currentIndex();
    config.insert(G::AuthType, authTypeOf(method));
    if (method == ServiceAccount) {
        config.insert(G::Auth_ServiceAccount::PrivateKey, QString::fromLatin1(m_privateKey.toBase64()));
        config.insert(G::Auth_ServiceAccount::ProjectId, m_projectId);
        config.insert(G::Auth_ServiceAccount::ServiceAccount, m_serviceAccount);
        config.insert(Http::UseSsl, true);
    } else if (method == InstalledApp) {
        config.insert(G::Auth_InstalledApplication::ProjectId, m_appProjectId);
        config.insert(G::Auth_InstalledApplication::InitCode, m_code.toLatin1());
        config.insert(G::Auth_InstalledApplication::RefreshToken, m_refreshToken);
        config.insert(G::Auth_InstalledApplication::CodeVerifier, m_codeVerifier);
        config.insert(G::Auth_InstalledApplication::RedirectUri, m_redirectUri);
        config.insert(Http::UseSsl, true);
    } else {
        config.insert(G::Auth_AccessAndSecretKey::AccessKey, m_accessKey);
        config.insert(G::Auth_AccessAndSecretKey::SecretKey, m_secretKey);
        config.insert(Http::UseSsl, m_useSsl);
    }
    const QString name = bucketCombo()->currentText().trimmed();
    if (!name.isEmpty())
        config.insert(NVL::Cloud::OperationConfig::ContainerName, name);
    return config;
}

bool Google::Add::loadContainersFinished(NVL::Cloud::Operation::ListContainers* operation)
{
    // A listing started before the code was traded trades it itself: from
    // now on that token is the account's sign-in.
    const QString token = operation->cloudConfig().value(G::Auth_InstalledApplication::RefreshToken).toString();
    if (m_authentication->currentIndex() == InstalledApp && !token.isEmpty() && token != m_refreshToken) {
        NVL::NvlDebug(QStringLiteral("NVB")).info() << QStringLiteral("Refresh token: obtained");
        m_refreshToken = token;
        m_code.clear();
    }
    m_containers = fillBuckets(operation->data());
    onDataChanged();
    return true;
}

void Google::Add::saveConfig()
{
    const int method = m_authentication->currentIndex();
    QJsonObject record;
    record.insert(GoogleRecord::AuthType, authTypeOf(method));
    if (method == ServiceAccount) {
        record.insert(GoogleRecord::SAccount::ProjectId, encipher(m_projectId));
        record.insert(GoogleRecord::SAccount::ServiceAccount, encipher(m_serviceAccount));
        record.insert(GoogleRecord::SAccount::PrivateKey, encipher(QString::fromLatin1(m_privateKey.toBase64())));
        record.insert(Record::Cloud::UseSsl, true);
    } else if (method == InstalledApp) {
        record.insert(GoogleRecord::InstallApp::ProjectId, encipher(m_appProjectId));
        record.insert(GoogleRecord::InstallApp::RefreshToken, encipher(m_refreshToken));
        record.insert(Record::Cloud::UseSsl, true);
    } else {
        record.insert(GoogleRecord::ASkey::AccessKey, m_accessKey);
        record.insert(GoogleRecord::ASkey::SecretKey, encipher(m_secretKey));
        record.insert(Record::Cloud::UseSsl, m_useSsl);
    }
    record.insert(Record::Cloud::ContainerName, bucketCombo()->currentText().trimmed());
    saveRecord(record, m_displayName->text().trimmed());
}

void Google::Add::onAccept()
{
    // A code not yet traded for a refresh token would be lost with the
    // dialog; the listing that trades it is what enables OK, so this is a
    // guard against a state the form does not offer.
    if (m_authentication->currentIndex() == InstalledApp && m_refreshToken.isEmpty()) {
        setErrorMessage(tr("Sign-in is not complete: list the buckets first"));
        return;
    }
    saveConfig();
}

void Google::Add::onSetItem(const QModelIndex& index)
{
    QJsonObject record;
    QString id;
    if (!readItem(index, m_displayName, &record, &id))
        return;
    const int method = methodOf(record.value(GoogleRecord::AuthType).toInt());
    endLockUI();
    try {
        if (method == ServiceAccount) {
            m_projectId = decipher(record, GoogleRecord::SAccount::ProjectId);
            m_serviceAccount = decipher(record, GoogleRecord::SAccount::ServiceAccount);
            m_privateKey = QByteArray::fromBase64(decipher(record, GoogleRecord::SAccount::PrivateKey).toLatin1());
        } else if (method == InstalledApp) {
            m_appProjectId = decipher(record, GoogleRecord::InstallApp::ProjectId);
            m_refreshToken = decipher(record, GoogleRecord::InstallApp::RefreshToken);
        } else {
            m_accessKey = record.value(GoogleRecord::ASkey::AccessKey).toString();
            m_secretKey = decipher(record, GoogleRecord::ASkey::SecretKey);
            m_useSsl = record.value(Record::Cloud::UseSsl).toBool(true);
        }
    } catch (const QString&) {
        NVL::NvlDebug(QStringLiteral("NVB")).error()
            << QStringLiteral("Can't decrypt secret Key in account load. ID: %1").arg(id);
        setErrorMessage(tr("Can't decrypt secret Key in account load."));
        return;
    }
    {
        const QSignalBlocker block(m_authentication);
        m_authentication->setCurrentIndex(method);
    }
    m_settings->setEnabled(true);
    loadContainers();
    setSavedContainer(record.value(Record::Cloud::ContainerName).toString());
}

void Google::Add::onAddBucketClicked()
{
    onClearErrorMessage();
    AddContainer dialog(QSet<QString>(m_containers.cbegin(), m_containers.cend()), this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    NVL::NvlDebug(QStringLiteral("NVB")).info() << QStringLiteral("Google: create new bucket!");
    const QString name = dialog.name().trimmed();
    createContainer(NVL::Cloud::ContainerParams::GoogleStorage(name, dialog.location(), dialog.type()).json());
    m_newContainer = name;
}

void Google::Add::onAdvancedClicked()
{
    onClearErrorMessage();
    // Only keys may go without TLS; both OAuth forms always use it.
    const bool keys = m_authentication->currentIndex() == AccessKey;
    AdvancedStorage advanced(!canRequestPrefixes(), m_useSsl, !keys, *this, this);
    if (advanced.exec() != QDialog::Accepted)
        return;
    setPrefix(advanced.prefix());
    if (keys && advanced.useSsl() != m_useSsl) {
        m_useSsl = advanced.useSsl();
        onCredsReset();
        onDataChanged();
    }
}

} // namespace NVB::GUI::Settings::Account
