#include "openstackadd.h"

#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QJsonArray>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QSet>
#include <QTabWidget>
#include <QToolButton>

#include "accounts/advanced/advancedstorage.h"
#include "accounts/containercombo.h"
#include "app/guiconfig.h"
#include "app/icons/iconmanager.h"
#include "cloud/cloudconfig.h"
#include "cloud/containerparams/openstack.h"
#include "cloud/endpointhelper.h"
#include "cloud/operations/listcontainers.h"
#include "cloud/storageaccountconfigformat.h"
#include "core/nvldebug.h"
#include "crypt/cryptns.h"
#include "openstackaddcontainer.h"

namespace NVB::GUI::Settings::Account {

namespace Record = NVB::Info::StorageAccountConfigFormat;
namespace RS = NVB::Info::StorageAccountConfigFormat::Cloud::OpenStack;
namespace OS = NVL::Cloud::Config::OpenStack;
namespace Http = NVL::Cloud::Api::Config::Http;

OpenStack::Add::Add(
    NVL::Cloud::Type type, const Presets& presets, bool keystoneV2, bool keystoneV3, bool internalUrl, QWidget* parent)
    : Storages::Add(type, parent)
    , m_presets(new QToolButton(this))
    , m_container(new QComboBox(this))
    , m_addContainer(new QToolButton(this))
{
    auto edit = [this] {
        auto* line = new QLineEdit(this);
        line->setMinimumWidth(LineEditWidth);
        return line;
    };
    m_displayName = edit();
    m_user = edit();
    m_apiKey = edit();
    m_apiKey->setEchoMode(QLineEdit::Password);
    m_endpoint = edit();
    auto* form = new QFormLayout;
    form->addRow(tr("Display Name:"), m_displayName);
    form->addRow(tr("User Name:"), m_user);
    form->addRow(tr("Api Key:"), m_apiKey);
    auto* endpointRow = new QHBoxLayout;
    endpointRow->setSpacing(2);
    endpointRow->addWidget(m_endpoint, 1);
    endpointRow->addWidget(m_presets);
    m_presets->setText(QStringLiteral("..."));
    m_presets->setPopupMode(QToolButton::InstantPopup);
    m_presets->setVisible(!presets.isEmpty());
    auto* menu = new QMenu(m_presets);
    for (const auto& preset : presets) {
        QAction* action = menu->addAction(preset.first);
        action->setData(preset.second);
        connect(action, &QAction::triggered, this, &Add::onLocationTriggered);
    }
    m_presets->setMenu(menu);
    form->addRow(tr("Endpoint:"), endpointRow);
    m_container->setEnabled(false);
    m_addContainer->setIcon(IconManager::icon(IconManager::Add));
    m_addContainer->setStyleSheet(NVB::GUI::Config::ToolButton::StyleSheet);
    m_addContainer->setToolTip(tr("Add New Container"));
    m_addContainer->setEnabled(false);
    auto* containerRow = new QHBoxLayout;
    containerRow->setSpacing(2);
    containerRow->addWidget(m_container, 1);
    containerRow->addWidget(m_addContainer);
    form->addRow(tr("Container:"), containerRow);
    if (internalUrl) {
        m_internalUrl = new QCheckBox(this);
        form->addRow(tr("Use internal URLs:"), m_internalUrl);
    }

    auto kindCombo = [this](const QString& id, const QString& name) {
        auto* combo = new QComboBox(this);
        combo->addItem(id);
        combo->addItem(name);
        return combo;
    };
    auto* keystone = new QWidget(this);
    auto* keystoneLayout = new QVBoxLayout(keystone);
    if (keystoneV2) {
        m_v2 = new QGroupBox(tr("Use Keystone v2"), keystone);
        m_v2->setCheckable(true);
        m_v2->setChecked(false);
        m_tenantKind = kindCombo(tr("Tenant ID"), tr("Tenant Name"));
        m_tenant = edit();
        m_v2Region = edit();
        m_v2Region->setReadOnly(true);
        m_v2Region->setPlaceholderText(tr("the chosen container's"));
        auto* layout = new QFormLayout(m_v2);
        layout->addRow(m_tenantKind, m_tenant);
        layout->addRow(tr("Region:"), m_v2Region);
        keystoneLayout->addWidget(m_v2);
        connect(m_v2, &QGroupBox::toggled, this, &Add::onUseKeystoneChecked);
    }
    if (keystoneV3) {
        m_v3 = new QGroupBox(tr("Use Keystone v3"), keystone);
        m_v3->setCheckable(true);
        m_v3->setChecked(false);
        m_domainKind = kindCombo(tr("Domain ID"), tr("Domain Name"));
        m_domain = edit();
        m_v3Region = edit();
        m_v3Region->setReadOnly(true);
        m_v3Region->setPlaceholderText(tr("the chosen container's"));
        m_scope = new QGroupBox(tr("Use scope"), m_v3);
        m_scope->setCheckable(true);
        m_scope->setChecked(false);
        m_projectKind = kindCombo(tr("Project ID"), tr("Project Name"));
        m_project = edit();
        auto* scopeLayout = new QFormLayout(m_scope);
        scopeLayout->addRow(m_projectKind, m_project);
        auto* layout = new QFormLayout(m_v3);
        layout->addRow(m_domainKind, m_domain);
        layout->addRow(tr("Region:"), m_v3Region);
        layout->addRow(m_scope);
        keystoneLayout->addWidget(m_v3);
        connect(m_v3, &QGroupBox::toggled, this, &Add::onUseKeystoneChecked);
        connect(m_scope, &QGroupBox::toggled, this, &Add::onDataChanged);
    }
    keystoneLayout->addStretch(1);
    if (keystoneV2 || keystoneV3) {
        auto* tabs = new QTabWidget(this);
        auto* base = new QWidget(tabs);
        base->setLayout(form);
        tabs->addTab(base, tr("Base"));
        tabs->addTab(keystone, tr("Keystone"));
        auto* place = new QVBoxLayout;
        place->addWidget(tabs);
        setProviderLayout(place);
    } else {
        delete keystone;
        setProviderLayout(form);
    }

    for (QLineEdit* line : {m_displayName, m_user, m_apiKey, m_endpoint, m_tenant, m_domain, m_project}) {
        if (!line)
            continue;
        connect(line, &QLineEdit::textChanged, this, &Add::onDataChanged);
        if (line != m_displayName)
            connect(line, &QLineEdit::textChanged, this, &Add::onCredsReset);
    }
    for (QComboBox* combo : {m_tenantKind, m_domainKind, m_projectKind}) {
        if (!combo)
            continue;
        connect(combo, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &Add::onCredsReset);
        connect(combo, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &Add::onDataChanged);
    }
    if (m_internalUrl) {
        connect(m_internalUrl, &QCheckBox::toggled, this, &Add::onCredsReset);
        connect(m_internalUrl, &QCheckBox::toggled, this, &Add::onDataChanged);
    }
    connect(m_endpoint, &QLineEdit::editingFinished, this, &Add::onEditinfFinished);
    connect(m_container, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &Add::onDataChanged);
    connect(m_container, QOverload<int>::of(&QComboBox::activated), this, [this] { onDataChanged(); });
    connect(m_addContainer, &QToolButton::clicked, this, &Add::onAddContainerClicked);
    // There is no test button: a press on the container list lists them.
    m_container->installEventFilter(this);
}

bool OpenStack::Add::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_container && event->type() == QEvent::MouseButtonPress && m_container->isEnabled()
        && !m_containersLoaded)
        loadContainers();
    return Storages::Add::eventFilter(watched, event);
}

bool OpenStack::Add::canRequestPrefixes() const
{
    return m_containersLoaded && !chosen().first.isEmpty();
}

void OpenStack::Add::onLocationTriggered()
{
    auto* action = qobject_cast<QAction*>(sender());
    if (!action)
        return;
    m_endpoint->setText(action->data().toString());
    setKeystoneSufix();
}

void OpenStack::Add::setKeystoneSufix()
{
    QString text = m_endpoint->text().trimmed();
    for (const QString& suffix : {QStringLiteral("/v1.0"), QStringLiteral("/v2.0"), QStringLiteral("/v3")}) {
        if (text.endsWith(suffix, Qt::CaseSensitive)) {
            text.chop(suffix.size());
            break;
        }
    }
    if (text.isEmpty())
        return;
    if (m_v2 && m_v2->isChecked())
        text += QStringLiteral("/v2.0");
    else if (m_v3 && m_v3->isChecked())
        text += QStringLiteral("/v3");
    else
        text += QStringLiteral("/v1.0");
    m_endpoint->setText(text);
}

void OpenStack::Add::onUseKeystoneChecked(bool checked)
{
    onCredsReset();
    if (checked) {
        QGroupBox* other = sender() == m_v2 ? m_v3 : m_v2;
        if (other && other->isChecked()) {
            const QSignalBlocker block(other);
            other->setChecked(false);
        }
    }
    setKeystoneSufix();
    onDataChanged();
}

void OpenStack::Add::onEditinfFinished()
{
    onClearErrorMessage();
    if (!m_endpoint->isModified() || m_endpoint->text().trimmed().isEmpty())
        return;
    const QString endpoint = checkingEndpoint(m_endpoint->text(), m_useSsl);
    if (!endpoint.isEmpty())
        m_endpoint->setText(endpoint);
}

void OpenStack::Add::onDataChanged()
{
    onClearErrorMessage();
    QList<QLineEdit*> required {m_displayName, m_user, m_apiKey, m_endpoint};
    if (m_v2 && m_v2->isChecked())
        required << m_tenant;
    if (m_v3 && m_v3->isChecked()) {
        required << m_domain;
        if (m_scope->isChecked())
            required << m_project;
    }
    bool filled = true;
    for (QLineEdit* line : qAsConst(required))
        filled = filled && !line->text().trimmed().isEmpty();
    m_container->setEnabled(filled);
    if (!filled) {
        okButton()->setEnabled(false);
        return;
    }
    if (!m_saved.first.isEmpty() && m_containersLoaded) {
        int found = -1;
        for (int i = 0; i < m_order.size() && found < 0; ++i) {
            if (m_containers.value(m_order.at(i)) == m_saved)
                found = i;
        }
        for (int i = 0; i < m_order.size() && found < 0; ++i) {
            if (m_containers.value(m_order.at(i)).first == m_saved.first)
                found = i;
        }
        m_saved = {};
        const QSignalBlocker block(m_container);
        m_container->setCurrentIndex(found < 0 ? 0 : found);
    }
    const QString region = chosen().second;
    for (QLineEdit* line : {m_v2Region, m_v3Region}) {
        if (line)
            line->setText(region);
    }
    m_addContainer->setEnabled(m_containersLoaded);
    okButton()->setEnabled(m_containersLoaded && m_container->currentIndex() >= 0);
}

void OpenStack::Add::onCredsReset()
{
    m_containers.clear();
    m_order.clear();
    m_containersLoaded = false;
    ContainerCombo::reset(m_container, m_addContainer, okButton());
}

QPair<QString, QString> OpenStack::Add::chosen() const
{
    return m_containers.value(m_container->currentText());
}

QMap<QString, QVariant> OpenStack::Add::cloudConfig() const
{
    QMap<QString, QVariant> config = Storages::Add::cloudConfig();
    const QPair<QString, bool> endpoint = NVL::Utitlity::EndpointHelper::toPair(m_endpoint->text());
    config.insert(Http::Endpoint, endpoint.first);
    config.insert(Http::UseSsl, endpoint.second);
    config.insert(OS::Username, m_user->text().trimmed());
    config.insert(OS::ApiKey, m_apiKey->text());
    config.insert(OS::UseInternalUrl, m_internalUrl && m_internalUrl->isChecked());
    const QPair<QString, QString> container = chosen();
    if (m_v2 && m_v2->isChecked()) {
        config.insert(OS::AuthType, 2);
        config.insert(
            m_tenantKind->currentIndex() == 0 ? OS::Auth_Keystore_V2::TenantId : OS::Auth_Keystore_V2::TenantName,
            m_tenant->text().trimmed());
        config.insert(OS::Auth_Keystore_V2::Region, container.second);
    } else if (m_v3 && m_v3->isChecked()) {
        config.insert(OS::AuthType, 3);
        config.insert(
            m_domainKind->currentIndex() == 0 ? OS::Auth_Keystore_V3::DomainId : OS::Auth_Keystore_V3::DomainName,
            m_domain->text().trimmed());
        config.insert(OS::Auth_Keystore_V3::UseScope::Key, m_scope->isChecked() ? 1 : 0);
        if (m_scope->isChecked())
            config.insert(m_projectKind->currentIndex() == 0 ? OS::Auth_Keystore_V3::UseScope::ProjectId
                                                             : OS::Auth_Keystore_V3::UseScope::ProjectName,
                m_project->text().trimmed());
        config.insert(OS::Auth_Keystore_V3::Region, container.second);
    } else {
        config.insert(OS::AuthType, 1);
    }
    config.insert(NVL::Cloud::OperationConfig::ContainerName, container.first);
    return config;
}

bool OpenStack::Add::loadContainersFinished(NVL::Cloud::Operation::ListContainers* operation)
{
    m_containers.clear();
    m_order.clear();
    const QJsonArray data = operation->data();
    for (const QJsonValue& value : data) {
        const QString name = value.toObject().value(QStringLiteral("Name")).toString();
        const QString region = value.toObject().value(QStringLiteral("Region")).toString();
        const QString shown = region.isEmpty() ? name : QStringLiteral("%1 (%2)").arg(name, region);
        m_containers.insert(shown, {name, region});
        m_order.append(shown);
    }
    fillContainers();
    m_containersLoaded = true;
    onDataChanged();
    return true;
}

void OpenStack::Add::fillContainers()
{
    const QSignalBlocker block(m_container);
    m_container->clear();
    m_container->addItems(m_order);
}

void OpenStack::Add::lockWidgetsAfterError(bool locked)
{
    Storages::Add::lockWidgetsAfterError(locked);
    m_addContainer->setEnabled(!locked && m_containersLoaded);
}

void OpenStack::Add::lockWidgetsAfterSslOperation(bool locked)
{
    Storages::Add::lockWidgetsAfterSslOperation(locked);
    m_container->setEnabled(true);
}

void OpenStack::Add::saveConfig()
{
    NVL::NvlDebug(QStringLiteral("NVB")).info() << QStringLiteral("Save config for %1").arg(int(type()));
    const QMap<QString, QVariant> config = cloudConfig();
    QJsonObject record;
    record.insert(RS::UserName, m_user->text().trimmed());
    record.insert(RS::ApiKey, SHARED::cryptNS::encrypt_local_password(m_apiKey->text()));
    record.insert(Record::Cloud::Endpoint, m_endpoint->text().trimmed());
    record.insert(Record::Cloud::ContainerName, chosen().first);
    record.insert(Record::Cloud::UseSsl, config.value(Http::UseSsl).toBool());
    record.insert(RS::UseInternalUrl, m_internalUrl && m_internalUrl->isChecked());
    const int authType = config.value(OS::AuthType).toInt();
    record.insert(RS::AuthType, authType);
    const QMap<QString, QString> keystone {{OS::Auth_Keystore_V2::TenantId, RS::Keystore::V2::TenantId},
        {OS::Auth_Keystore_V2::TenantName, RS::Keystore::V2::TenantName},
        {OS::Auth_Keystore_V3::DomainId, RS::Keystore::V3::DomainId},
        {OS::Auth_Keystore_V3::DomainName, RS::Keystore::V3::DomainName},
        {OS::Auth_Keystore_V3::UseScope::ProjectId, RS::Keystore::V3::UseScope::ProjectId},
        {OS::Auth_Keystore_V3::UseScope::ProjectName, RS::Keystore::V3::UseScope::ProjectName}};
    if (authType != 1) {
        for (auto it = keystone.cbegin(); it != keystone.cend(); ++it) {
            if (config.contains(it.key()))
                record.insert(it.value(), config.value(it.key()).toString());
        }
        record.insert(RS::Keystore::Region, chosen().second);
        if (authType == 3)
            record.insert(RS::Keystore::V3::UseScope::Key, config.value(OS::Auth_Keystore_V3::UseScope::Key).toInt());
    }
    saveRecord(record, m_displayName->text().trimmed());
}

void OpenStack::Add::onAccept()
{
    saveConfig();
}

void OpenStack::Add::onSetItem(const QModelIndex& index)
{
    QJsonObject record;
    QString id;
    if (!readItem(index, m_displayName, &record, &id))
        return;
    m_user->setText(record.value(RS::UserName).toString());
    m_endpoint->setText(record.value(Record::Cloud::Endpoint).toString());
    if (m_internalUrl)
        m_internalUrl->setChecked(record.value(RS::UseInternalUrl).toBool());
    const int authType = record.value(RS::AuthType).toInt(1);
    if (authType == 2 && m_v2) {
        m_v2->setChecked(true);
        const bool byId = record.contains(RS::Keystore::V2::TenantId);
        m_tenantKind->setCurrentIndex(byId ? 0 : 1);
        m_tenant->setText(record.value(byId ? RS::Keystore::V2::TenantId : RS::Keystore::V2::TenantName).toString());
    } else if (authType == 3 && m_v3) {
        m_v3->setChecked(true);
        const bool byId = record.contains(RS::Keystore::V3::DomainId);
        m_domainKind->setCurrentIndex(byId ? 0 : 1);
        m_domain->setText(record.value(byId ? RS::Keystore::V3::DomainId : RS::Keystore::V3::DomainName).toString());
        m_scope->setChecked(record.value(RS::Keystore::V3::UseScope::Key).toInt() == 1);
        const bool projectById = record.contains(RS::Keystore::V3::UseScope::ProjectId);
        m_projectKind->setCurrentIndex(projectById ? 0 : 1);
        m_project->setText(
            record.value(projectById ? RS::Keystore::V3::UseScope::ProjectId : RS::Keystore::V3::UseScope::ProjectName)
                .toString());
    }
    endLockUI();
    try {
        m_apiKey->setText(SHARED::cryptNS::decrypt_local_password(record.value(RS::ApiKey).toString()));
    } catch (const QString&) {
        NVL::NvlDebug(QStringLiteral("NVB")).error()
            << QStringLiteral("Can't decrypt secret Key in account load. ID: %1").arg(id);
        setErrorMessage(tr("Can't decrypt secret Key in account load."));
        return;
    }
    m_saved = {record.value(Record::Cloud::ContainerName).toString(), record.value(RS::Keystore::Region).toString()};
    loadContainers();
}

void OpenStack::Add::onAddContainerClicked()
{
    onClearErrorMessage();
    NVL::NvlDebug(QStringLiteral("NVB")).info() << QStringLiteral("create new container for %1").arg(int(type()));
    QSet<QString> existing;
    for (const auto& container : qAsConst(m_containers))
        existing.insert(container.first);
    OpenStack::AddContainer dialog(existing, this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    const QString name = dialog.name().trimmed();
    createContainer(NVL::Cloud::ContainerParams::OpenStack(name).json());
    m_saved = {name, chosen().second};
}

void OpenStack::Add::onAdvancedClicked()
{
    onClearErrorMessage();
    Account::AdvancedStorage advanced(!canRequestPrefixes(), m_useSsl, true, *this, this);
    if (advanced.exec() == QDialog::Accepted)
        setPrefix(advanced.prefix());
}

} // namespace NVB::GUI::Settings::Account
