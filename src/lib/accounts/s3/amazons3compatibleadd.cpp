#include "amazons3compatibleadd.h"

#include <QComboBox>
#include <QEvent>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QSet>
#include <QToolButton>

#include "accounts/advanced/advancedstorage.h"
#include "accounts/containercombo.h"
#include "amazons3compatibleaddcontainer.h"
#include "amazons3compatibleadvancedstorage.h"
#include "app/guiconfig.h"
#include "app/icons/iconmanager.h"
#include "cloud/cloudconfig.h"
#include "cloud/containerparams/amazons3like.h"
#include "cloud/endpointhelper.h"
#include "cloud/info/infofactory.h"
#include "cloud/ioperation.h"
#include "cloud/operations/listcontainers.h"
#include "cloud/storageaccountconfigformat.h"
#include "core/nvldebug.h"
#include "crypt/cryptns.h"

namespace NVB::GUI::Settings::Account {

namespace Record = NVB::Info::StorageAccountConfigFormat;
namespace S3 = NVL::Cloud::Config::AmazonS3Like;
namespace Http = NVL::Cloud::Api::Config::Http;

AmazonS3Compatible::Add::Add(NVL::Cloud::Type type, bool endpointRow, bool signature, QWidget* parent)
    : Storages::Add(type, parent)
    , m_form(new QFormLayout)
    , m_bucket(new QComboBox(this))
    , m_addBucket(new QToolButton(this))
    , m_hasSignature(signature)
{
    auto edit = [this] {
        auto* line = new QLineEdit(this);
        line->setMinimumWidth(LineEditWidth);
        return line;
    };
    m_displayName = edit();
    m_accessKey = edit();
    m_secretKey = edit();
    m_secretKey->setEchoMode(QLineEdit::Password);
    m_endpoint = edit();
    m_form->addRow(tr("Display Name:"), m_displayName);
    m_form->addRow(tr("Access Key:"), m_accessKey);
    m_form->addRow(tr("Secret Key:"), m_secretKey);
    if (endpointRow)
        m_form->addRow(tr("Endpoint:"), m_endpoint);
    else
        m_endpoint->hide();
    m_bucket->setEnabled(false);
    m_addBucket->setIcon(IconManager::icon(IconManager::Add));
    m_addBucket->setStyleSheet(NVB::GUI::Config::ToolButton::StyleSheet);
    m_addBucket->setToolTip(tr("Add New Container"));
    m_addBucket->setEnabled(false);
    auto* bucketRow = new QHBoxLayout;
    bucketRow->setSpacing(2);
    bucketRow->addWidget(m_bucket, 1);
    bucketRow->addWidget(m_addBucket);
    m_form->addRow(tr("Bucket:"), bucketRow);
    setProviderLayout(m_form);

    if (signature) {
        const auto info = NVL::Cloud::Info::InfoFactory::create(type);
        if (auto* s3 = dynamic_cast<NVL::Cloud::Info::AmazonS3Like*>(info.data()))
            m_signature = s3->defaultSignature();
    }

    for (QLineEdit* line : {m_displayName, m_accessKey, m_secretKey, m_endpoint})
        connect(line, &QLineEdit::textChanged, this, &Add::onDataChanged);
    for (QLineEdit* line : {m_accessKey, m_secretKey, m_endpoint})
        connect(line, &QLineEdit::textChanged, this, &Add::onCredsReset);
    connect(m_endpoint, &QLineEdit::editingFinished, this, &Add::onEditingFinished);
    connect(m_bucket, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &Add::onDataChanged);
    connect(m_addBucket, &QToolButton::clicked, this, &Add::onAddContainerClicked);
    m_bucket->installEventFilter(this);
}

void AmazonS3Compatible::Add::setEndpointPreset()
{
    const auto info = NVL::Cloud::Info::InfoFactory::create(type());
    if (auto* s3 = dynamic_cast<NVL::Cloud::Info::AmazonS3Like*>(info.data())) {
        const QSignalBlocker block(m_endpoint);
        m_endpoint->setText(s3->defaultEndpoint().toString());
        m_useSsl = s3->defaultEndpoint().scheme() != QLatin1String("http");
    }
}

bool AmazonS3Compatible::Add::canRequestPrefixes() const
{
    return m_containersLoaded;
}

bool AmazonS3Compatible::Add::eventFilter(QObject* watched, QEvent* event)
{
    // Opening the bucket list is what tests a new account.
    if (watched == m_bucket && event->type() == QEvent::MouseButtonPress && m_bucket->isEnabled()
        && !m_containersLoaded)
        loadContainers();
    return Storages::Add::eventFilter(watched, event);
}

void AmazonS3Compatible::Add::onDataChanged()
{
    onClearErrorMessage();
    for (QLineEdit* line : {m_displayName, m_accessKey, m_secretKey, m_endpoint}) {
        if (line->text().trimmed().isEmpty()) {
            m_bucket->setEnabled(false);
            return;
        }
    }
    m_bucket->setEnabled(true);
    ContainerCombo::selectSaved(m_bucket, &m_savedContainer);
    if (m_containersLoaded) {
        m_addBucket->setEnabled(true);
        if (m_bucket->currentIndex() >= 0)
            okButton()->setEnabled(true);
    }
}

void AmazonS3Compatible::Add::onCredsReset()
{
    m_containers.clear();
    ContainerCombo::reset(m_bucket, m_addBucket, okButton());
    onClearErrorMessage();
    m_containersLoaded = false;
}

void AmazonS3Compatible::Add::onEditingFinished()
{
    onClearErrorMessage();
    if (!m_endpoint->isModified())
        return;
    const QString endpoint = checkingEndpoint(m_endpoint->text(), m_useSsl);
    if (!endpoint.isEmpty())
        m_endpoint->setText(endpoint);
}

QMap<QString, QVariant> AmazonS3Compatible::Add::cloudConfig() const
{
    QMap<QString, QVariant> config = Storages::Add::cloudConfig();
    config.insert(S3::AccessKey, m_accessKey->text().trimmed());
    config.insert(S3::SecretKey, m_secretKey->text().trimmed());
    config.insert(Http::UseSsl, m_useSsl);
    if (type() != NVL::Cloud::Type::AmazonS3 && type() != NVL::Cloud::Type::AmazonS3Chinese) {
        const QPair<QString, bool> endpoint = NVL::Utitlity::EndpointHelper::toPair(m_endpoint->text());
        config.insert(Http::Endpoint, endpoint.first);
        config.insert(Http::UseSsl, endpoint.second);
    }
    config.insert(NVL::Cloud::OperationConfig::ContainerName, m_bucket->currentText().trimmed());
    if (m_hasSignature)
        config.insert(S3::Signature::Key,
            m_signature == NVL::Cloud::Info::AmazonS3Like::V2 ? S3::Signature::Value::V2 : S3::Signature::Value::V4);
    return config;
}

bool AmazonS3Compatible::Add::loadContainersFinished(NVL::Cloud::Operation::ListContainers* operation)
{
    m_containers = ContainerCombo::fill(m_bucket, operation->data(), &m_newContainer, &m_savedContainer);
    m_containersLoaded = true;
    m_addBucket->setEnabled(true);
    onDataChanged();
    return true;
}

void AmazonS3Compatible::Add::lockWidgetsAfterError(bool locked)
{
    Storages::Add::lockWidgetsAfterError(locked);
    m_bucket->setEnabled(!locked);
    m_addBucket->setEnabled(!locked);
}

void AmazonS3Compatible::Add::lockWidgetsAfterSslOperation(bool locked)
{
    Storages::Add::lockWidgetsAfterSslOperation(locked);
    // The user may open the list again to retry.
    m_bucket->setEnabled(true);
}

QJsonObject AmazonS3Compatible::Add::record() const
{
    QJsonObject record;
    record.insert(Record::Cloud::AmazonS3Like::AccessKey, m_accessKey->text().trimmed());
    record.insert(
        Record::Cloud::AmazonS3Like::SecretKey, SHARED::cryptNS::encrypt_local_password(m_secretKey->text().trimmed()));
    record.insert(Record::Cloud::ContainerName, m_bucket->currentText().trimmed());
    record.insert(Record::Cloud::UseSsl, m_useSsl);
    record.insert(Record::Cloud::Endpoint, m_endpoint->text().trimmed());
    if (m_hasSignature)
        record.insert(
            Record::Cloud::AmazonS3Like::Signature, m_signature == NVL::Cloud::Info::AmazonS3Like::V2 ? 2 : 4);
    return record;
}

void AmazonS3Compatible::Add::saveConfig()
{
    saveRecord(record(), m_displayName->text().trimmed());
}

void AmazonS3Compatible::Add::onAccept()
{
    saveConfig();
}

void AmazonS3Compatible::Add::onSetItem(const QModelIndex& index)
{
    QJsonObject record;
    QString id;
    if (!readItem(index, m_displayName, &record, &id))
        return;
    m_accessKey->setText(record.value(Record::Cloud::AmazonS3Like::AccessKey).toString());
    m_useSsl = record.value(Record::Cloud::UseSsl).toBool(true);
    m_endpoint->setText(NVL::Utitlity::EndpointHelper::toEndpointWithScheme(
        record.value(Record::Cloud::Endpoint).toString(), m_useSsl));
    if (m_hasSignature)
        m_signature = record.value(Record::Cloud::AmazonS3Like::Signature).toInt() == 2
            ? NVL::Cloud::Info::AmazonS3Like::V2
            : NVL::Cloud::Info::AmazonS3Like::V4;
    endLockUI();
    try {
        m_secretKey->setText(
            SHARED::cryptNS::decrypt_local_password(record.value(Record::Cloud::AmazonS3Like::SecretKey).toString()));
    } catch (const QString&) {
        NVL::NvlDebug(QStringLiteral("NVB")).error()
            << QStringLiteral("Can't decrypt secret Key in account load. ID: %1").arg(id);
        setErrorMessage(tr("Can't decrypt secret Key in account load."));
        return;
    }
    loadContainers();
    m_savedContainer = record.value(Record::Cloud::ContainerName).toString();
}

Storages::AddContainer* AmazonS3Compatible::Add::addContainerDialog()
{
    const QSet<QString> existing(m_containers.cbegin(), m_containers.cend());
    return new AddContainer(existing, false, this);
}

void AmazonS3Compatible::Add::onAddContainerClicked()
{
    onClearErrorMessage();
    QScopedPointer<Storages::AddContainer> dialog(addContainerDialog());
    if (dialog->exec() != QDialog::Accepted)
        return;
    NVL::NvlDebug(QStringLiteral("NVB")).info() << QStringLiteral("AmazonS3Like: create new bucket!");
    QString location;
    if (auto* bucket = qobject_cast<AddContainer*>(dialog.data()))
        location = bucket->location();
    const QString name = dialog->name().trimmed();
    createContainer(NVL::Cloud::ContainerParams::AmazonS3Like(name, location).json());
    m_newContainer = name;
}

void AmazonS3Compatible::Add::onAdvancedClicked()
{
    onClearErrorMessage();
    if (!m_endpoint->isHidden()) {
        const QString endpoint = checkingEndpoint(m_endpoint->text(), m_useSsl);
        if (endpoint.isEmpty())
            return;
        const QSignalBlocker block(m_endpoint);
        m_endpoint->setText(endpoint);
    }
    QScopedPointer<AmazonS3Compatible::AdvancedStorage> advanced(m_hasSignature
            ? new AmazonS3Compatible::AdvancedStorage(m_useSsl, !canRequestPrefixes(), *this, m_signature, this)
            : new AmazonS3Compatible::AdvancedStorage(m_useSsl, !canRequestPrefixes(), *this, this));
    if (advanced->exec() != QDialog::Accepted)
        return;
    setPrefix(advanced->prefix());
    const bool useSsl = advanced->useSsl();
    if (useSsl != m_useSsl) {
        onCredsReset();
        m_bucket->setEnabled(true);
        NVL::Utitlity::EndpointHelper helper(m_endpoint->text(), true);
        if (helper.hasError()) {
            setErrorMessage(helper.lastErrorMessage());
        } else {
            helper.setUseSsl(useSsl);
            const QSignalBlocker block(m_endpoint);
            m_endpoint->setText(helper.endpointWithScheme());
        }
    }
    m_useSsl = useSsl;
    m_signature = advanced->authType() == 0 ? NVL::Cloud::Info::AmazonS3Like::V2 : NVL::Cloud::Info::AmazonS3Like::V4;
}

} // namespace NVB::GUI::Settings::Account
