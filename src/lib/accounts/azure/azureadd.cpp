#include "azureadd.h"

#include <QComboBox>
#include <QEvent>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSet>
#include <QToolButton>

#include "accounts/advanced/advancedstorage.h"
#include "accounts/containercombo.h"
#include "app/guiconfig.h"
#include "app/icons/iconmanager.h"
#include "azureaddcontainer.h"
#include "cloud/cloudconfig.h"
#include "cloud/containerparams/azureblob.h"
#include "cloud/endpointhelper.h"
#include "cloud/info/azureblob.h"
#include "cloud/operations/listcontainers.h"
#include "cloud/storageaccountconfigformat.h"
#include "core/nvldebug.h"
#include "crypt/cryptns.h"

namespace NVB::GUI::Settings::Account {

namespace Record = NVB::Info::StorageAccountConfigFormat;
namespace AZ = NVL::Cloud::Config::AzureBlob;
namespace Http = NVL::Cloud::Api::Config::Http;

Azure::Add::Add(QWidget* parent)
    : Storages::Add(NVL::Cloud::Type::AzureBlob, parent)
    , m_accountType(new QComboBox(this))
    , m_endpointLabel(new QLabel(tr("Endpoint:"), this))
    , m_container(new QComboBox(this))
    , m_addContainer(new QToolButton(this))
{
    auto edit = [this] {
        auto* line = new QLineEdit(this);
        line->setMinimumWidth(LineEditWidth);
        return line;
    };
    m_displayName = edit();
    m_account = edit();
    m_key = edit();
    m_key->setEchoMode(QLineEdit::Password);
    m_endpoint = edit();
    for (const auto& type : NVL::Cloud::Info::AzureBlob().accountTypes())
        m_accountType->addItem(type.first, type.second);
    m_container->setEnabled(false);
    m_addContainer->setIcon(IconManager::icon(IconManager::Add));
    m_addContainer->setStyleSheet(NVB::GUI::Config::ToolButton::StyleSheet);
    m_addContainer->setToolTip(tr("Add New Container"));
    m_addContainer->setEnabled(false);
    auto* form = new QFormLayout;
    form->addRow(tr("Display Name:"), m_displayName);
    form->addRow(tr("Account Name:"), m_account);
    form->addRow(tr("Shared Key:"), m_key);
    form->addRow(tr("Account Type:"), m_accountType);
    form->addRow(m_endpointLabel, m_endpoint);
    auto* containerRow = new QHBoxLayout;
    containerRow->setSpacing(2);
    containerRow->addWidget(m_container, 1);
    containerRow->addWidget(m_addContainer);
    form->addRow(tr("Container:"), containerRow);
    setProviderLayout(form);

    connect(m_displayName, &QLineEdit::textChanged, this, &Add::onDataChanged);
    for (QLineEdit* line : {m_account, m_key, m_endpoint}) {
        connect(line, &QLineEdit::textChanged, this, &Add::onDataChanged);
        connect(line, &QLineEdit::textChanged, this, &Add::onCredsReset);
    }
    connect(m_accountType, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &Add::onCredsReset);
    connect(m_accountType, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &Add::onAccounTypeChanged);
    connect(m_endpoint, &QLineEdit::editingFinished, this, &Add::onEndpointEditingFinished);
    connect(m_container, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &Add::onDataChanged);
    connect(m_addContainer, &QToolButton::clicked, this, &Add::onAddBucketClicked);
    m_container->installEventFilter(this);
    onAccounTypeChanged();
}

bool Azure::Add::isStack() const
{
    return m_accountType->currentText() == AZ::AccountTypes::Value::AzureStack;
}

void Azure::Add::onAccounTypeChanged()
{
    // A typed endpoint stays in the hidden edit, unused, for when the user
    // comes back to Azure Stack.
    m_endpoint->setVisible(isStack());
    m_endpointLabel->setVisible(isStack());
    onDataChanged();
}

void Azure::Add::onEndpointEditingFinished()
{
    if (m_endpoint->isHidden() || !m_endpoint->isModified())
        return;
    NVL::Utitlity::EndpointHelper helper(m_endpoint->text(), true);
    if (helper.hasError()) {
        setErrorMessage(helper.lastErrorMessage());
        return;
    }
    m_useSsl = helper.useSsl();
    const QSignalBlocker block(m_endpoint);
    m_endpoint->setText(helper.endpointWithScheme());
}

bool Azure::Add::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_container && event->type() == QEvent::MouseButtonPress && m_container->isEnabled()
        && !m_containersLoaded)
        loadContainers();
    return Storages::Add::eventFilter(watched, event);
}

bool Azure::Add::canRequestPrefixes() const
{
    return m_containersLoaded;
}

void Azure::Add::onDataChanged()
{
    onClearErrorMessage();
    bool filled = true;
    for (QLineEdit* line : {m_displayName, m_account, m_key})
        filled = filled && !line->text().trimmed().isEmpty();
    if (isStack())
        filled = filled && !m_endpoint->text().trimmed().isEmpty();
    ContainerCombo::update(m_container, m_addContainer, okButton(), filled, m_containersLoaded, &m_savedContainer);
}

void Azure::Add::onCredsReset()
{
    m_containers.clear();
    m_containersLoaded = false;
    ContainerCombo::reset(m_container, m_addContainer, okButton());
}

QMap<QString, QVariant> Azure::Add::cloudConfig() const
{
    QMap<QString, QVariant> config = Storages::Add::cloudConfig();
    config.insert(Http::UseSsl, m_useSsl);
    config.insert(AZ::Username, m_account->text().trimmed());
    config.insert(AZ::Password, m_key->text().trimmed());
    config.insert(NVL::Cloud::OperationConfig::ContainerName, m_container->currentText().trimmed());
    config.insert(AZ::AccountTypes::Key, m_accountType->currentData().toString());
    if (!m_endpoint->isHidden()) {
        const QPair<QString, bool> endpoint = NVL::Utitlity::EndpointHelper::toPair(m_endpoint->text());
        config.insert(Http::Endpoint, endpoint.first);
        config.insert(Http::UseSsl, endpoint.second);
    }
    return config;
}

bool Azure::Add::loadContainersFinished(NVL::Cloud::Operation::ListContainers* operation)
{
    m_containers = ContainerCombo::fill(m_container, operation->data(), &m_newContainer, &m_savedContainer);
    m_containersLoaded = true;
    onDataChanged();
    return true;
}

void Azure::Add::lockWidgetsAfterError(bool locked)
{
    Storages::Add::lockWidgetsAfterError(locked);
    m_addContainer->setEnabled(!locked && m_containersLoaded);
}

void Azure::Add::lockWidgetsAfterSslOperation(bool locked)
{
    Storages::Add::lockWidgetsAfterSslOperation(locked);
    m_container->setEnabled(true);
}

void Azure::Add::operationErrorHandler(int code, const QString& message)
{
    // These words are the product's own, and are not translated.
    switch (code) {
    case 1:
    case 4:
        Storages::Add::operationErrorHandler(code, QStringLiteral("Wrong Account Name"));
        break;
    case 7:
        Storages::Add::operationErrorHandler(code, QStringLiteral("Bad container name"));
        break;
    case 9:
        Storages::Add::operationErrorHandler(code, QStringLiteral("Wrong Shared Key "));
        break;
    default:
        Storages::Add::operationErrorHandler(code, message);
    }
}

void Azure::Add::saveConfig()
{
    QJsonObject record;
    record.insert(Record::Cloud::AzureBlob::UserName, m_account->text().trimmed());
    record.insert(Record::Cloud::AzureBlob::Password, SHARED::cryptNS::encrypt_local_password(m_key->text().trimmed()));
    record.insert(Record::Cloud::AzureBlob::AccountType, m_accountType->currentData().toString());
    record.insert(Record::Cloud::ContainerName, m_container->currentText().trimmed());
    record.insert(Record::Cloud::UseSsl, cloudConfig().value(Http::UseSsl).toBool());
    if (!m_endpoint->isHidden())
        record.insert(Record::Cloud::Endpoint, NVL::Utitlity::EndpointHelper::toEndpoint(m_endpoint->text()));
    saveRecord(record, m_displayName->text().trimmed());
}

void Azure::Add::onAccept()
{
    saveConfig();
}

void Azure::Add::onSetItem(const QModelIndex& index)
{
    QJsonObject record;
    QString id;
    if (!readItem(index, m_displayName, &record, &id))
        return;
    m_account->setText(record.value(Record::Cloud::AzureBlob::UserName).toString());
    m_useSsl = record.value(Record::Cloud::UseSsl).toBool(true);
    const int type = m_accountType->findData(record.value(Record::Cloud::AzureBlob::AccountType).toString());
    m_accountType->setCurrentIndex(type < 0 ? 0 : type);
    m_endpoint->setText(NVL::Utitlity::EndpointHelper::toEndpointWithScheme(
        record.value(Record::Cloud::Endpoint).toString(), m_useSsl));
    endLockUI();
    try {
        m_key->setText(
            SHARED::cryptNS::decrypt_local_password(record.value(Record::Cloud::AzureBlob::Password).toString()));
    } catch (const QString&) {
        NVL::NvlDebug(QStringLiteral("NVB")).error()
            << QStringLiteral("Can't decrypt secret Key in account load. ID: %1").arg(id);
        setErrorMessage(tr("Can't decrypt secret Key in account load."));
        return;
    }
    loadContainers();
    m_savedContainer = record.value(Record::Cloud::ContainerName).toString();
}

void Azure::Add::onAddBucketClicked()
{
    onClearErrorMessage();
    AddContainer dialog(QSet<QString>(m_containers.cbegin(), m_containers.cend()), this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    NVL::NvlDebug(QStringLiteral("NVB")).info() << QStringLiteral("Azure: create new container!");
    const QString name = dialog.name().trimmed();
    createContainer(NVL::Cloud::ContainerParams::AzureBlob(name, dialog.access()).json());
    m_newContainer = name;
}

void Azure::Add::onAdvancedClicked()
{
    onClearErrorMessage();
    Account::AdvancedStorage advanced(!canRequestPrefixes(), m_useSsl, false, *this, this);
    if (advanced.exec() != QDialog::Accepted)
        return;
    setPrefix(advanced.prefix());
    if (advanced.useSsl() != m_useSsl) {
        onCredsReset();
        m_useSsl = advanced.useSsl();
        if (!m_endpoint->text().trimmed().isEmpty()) {
            NVL::Utitlity::EndpointHelper helper(m_endpoint->text(), m_useSsl);
            helper.setUseSsl(m_useSsl);
            const QSignalBlocker block(m_endpoint);
            if (!helper.hasError())
                m_endpoint->setText(helper.endpointWithScheme());
        }
        onDataChanged();
    }
}

} // namespace NVB::GUI::Settings::Account
