#include "backblazeb2add.h"

#include <QComboBox>
#include <QEvent>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QJsonArray>
#include <QLineEdit>
#include <QPushButton>
#include <QSet>
#include <QToolButton>

#include "accounts/advanced/advanced.h"
#include "accounts/containercombo.h"
#include "app/guiconfig.h"
#include "app/icons/iconmanager.h"
#include "backblazeb2addcontainer.h"
#include "cloud/cloudconfig.h"
#include "cloud/containerparams/backblaze.h"
#include "cloud/operations/listcontainers.h"
#include "cloud/storageaccountconfigformat.h"
#include "core/nvldebug.h"
#include "crypt/cryptns.h"

namespace NVB::GUI::Settings::Account {

namespace Record = NVB::Info::StorageAccountConfigFormat;
namespace B2 = NVL::Cloud::Config::BackBlaze;

BackblazeB2::Add::Add(QWidget* parent)
    : Storages::Add(NVL::Cloud::Type::BackBlaze, parent)
    , m_bucket(new QComboBox(this))
    , m_addBucket(new QToolButton(this))
{
    auto edit = [this] {
        auto* line = new QLineEdit(this);
        line->setMinimumWidth(LineEditWidth);
        return line;
    };
    m_displayName = edit();
    m_keyId = edit();
    m_key = edit();
    m_key->setEchoMode(QLineEdit::Password);
    m_bucket->setEnabled(false);
    m_addBucket->setIcon(IconManager::icon(IconManager::Add));
    m_addBucket->setStyleSheet(NVB::GUI::Config::ToolButton::StyleSheet);
    m_addBucket->setToolTip(tr("Add New Container"));
    m_addBucket->setEnabled(false);
    auto* form = new QFormLayout;
    form->addRow(tr("Display Name:"), m_displayName);
    form->addRow(tr("Key ID:"), m_keyId);
    form->addRow(tr("Application Key:"), m_key);
    auto* bucketRow = new QHBoxLayout;
    bucketRow->setSpacing(2);
    bucketRow->addWidget(m_bucket, 1);
    bucketRow->addWidget(m_addBucket);
    form->addRow(tr("Bucket:"), bucketRow);
    setProviderLayout(form);

    connect(m_displayName, &QLineEdit::textChanged, this, &Add::onDataChanged);
    for (QLineEdit* line : {m_keyId, m_key}) {
        connect(line, &QLineEdit::textChanged, this, &Add::onDataChanged);
        connect(line, &QLineEdit::textChanged, this, &Add::onCredsReset);
    }
    connect(m_bucket, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &Add::onDataChanged);
    connect(m_addBucket, &QToolButton::clicked, this, &Add::onAddBucketClicked);
    m_bucket->installEventFilter(this);
}

bool BackblazeB2::Add::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_bucket && event->type() == QEvent::MouseButtonPress && m_bucket->isEnabled()
        && !m_containersLoaded)
        loadContainers();
    return Storages::Add::eventFilter(watched, event);
}

bool BackblazeB2::Add::canRequestPrefixes() const
{
    return m_containersLoaded;
}

void BackblazeB2::Add::onDataChanged()
{
    onClearErrorMessage();
    bool filled = true;
    for (QLineEdit* line : {m_displayName, m_keyId, m_key})
        filled = filled && !line->text().trimmed().isEmpty();
    ContainerCombo::update(m_bucket, m_addBucket, okButton(), filled, m_containersLoaded, &m_savedContainer);
}

void BackblazeB2::Add::onCredsReset()
{
    m_ids.clear();
    m_containersLoaded = false;
    ContainerCombo::reset(m_bucket, m_addBucket, okButton());
}

QMap<QString, QVariant> BackblazeB2::Add::cloudConfig() const
{
    QMap<QString, QVariant> config = Storages::Add::cloudConfig();
    config.insert(B2::AccountId, m_keyId->text().trimmed());
    config.insert(B2::ApplicationKey, m_key->text().trimmed());
    const QString name = m_bucket->currentText().trimmed();
    if (!name.isEmpty())
        config.insert(NVL::Cloud::OperationConfig::ContainerName, QStringLiteral("%1|%2").arg(m_ids.value(name), name));
    return config;
}

bool BackblazeB2::Add::loadContainersFinished(NVL::Cloud::Operation::ListContainers* operation)
{
    m_ids.clear();
    QStringList names;
    const QJsonArray data = operation->data();
    for (const QJsonValue& value : data) {
        const QString name = value.toObject().value(QStringLiteral("Name")).toString();
        m_ids.insert(name, value.toObject().value(QStringLiteral("Id")).toString());
        names.append(name);
    }
    {
        const QSignalBlocker block(m_bucket);
        m_bucket->clear();
        m_bucket->addItems(names);
    }
    m_containersLoaded = true;
    if (!m_newContainer.isEmpty()) {
        m_savedContainer = m_newContainer;
        m_newContainer.clear();
    }
    onDataChanged();
    return true;
}

void BackblazeB2::Add::lockWidgetsAfterError(bool locked)
{
    Storages::Add::lockWidgetsAfterError(locked);
    m_addBucket->setEnabled(!locked && m_containersLoaded);
}

void BackblazeB2::Add::lockWidgetsAfterSslOperation(bool locked)
{
    Storages::Add::lockWidgetsAfterSslOperation(locked);
    m_bucket->setEnabled(true);
}

void BackblazeB2::Add::operationErrorHandler(int code, const QString& message)
{
    Storages::Add::operationErrorHandler(code, code == 9 ? tr("Wrong Key ID or Application Key") : message);
}

void BackblazeB2::Add::saveConfig()
{
    const QString name = m_bucket->currentText().trimmed();
    QJsonObject record;
    record.insert(Record::Cloud::BackBlaze::AccountId, m_keyId->text().trimmed());
    record.insert(
        Record::Cloud::BackBlaze::ApplicationKey, SHARED::cryptNS::encrypt_local_password(m_key->text().trimmed()));
    record.insert(Record::Cloud::ContainerName, name);
    record.insert(Record::Cloud::BackBlaze::ContainerId, m_ids.value(name));
    saveRecord(record, m_displayName->text().trimmed());
}

void BackblazeB2::Add::onAccept()
{
    saveConfig();
}

void BackblazeB2::Add::onSetItem(const QModelIndex& index)
{
    QJsonObject record;
    QString id;
    if (!readItem(index, m_displayName, &record, &id))
        return;
    m_keyId->setText(record.value(Record::Cloud::BackBlaze::AccountId).toString());
    endLockUI();
    try {
        m_key->setText(
            SHARED::cryptNS::decrypt_local_password(record.value(Record::Cloud::BackBlaze::ApplicationKey).toString()));
    } catch (const QString&) {
        NVL::NvlDebug(QStringLiteral("NVB")).error()
            << QStringLiteral("Can't decrypt secret Key in account load. ID: %1").arg(id);
        setErrorMessage(tr("Can't decrypt secret Key in account load."));
        return;
    }
    loadContainers();
    m_savedContainer = record.value(Record::Cloud::ContainerName).toString();
}

void BackblazeB2::Add::onAddBucketClicked()
{
    onClearErrorMessage();
    const QStringList names = m_ids.keys();
    AddContainer dialog(QSet<QString>(names.cbegin(), names.cend()), this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    NVL::NvlDebug(QStringLiteral("NVB")).info() << QStringLiteral("BackblazeB2: create new bucket!");
    const QString name = dialog.name().trimmed();
    createContainer(NVL::Cloud::ContainerParams::BackBlaze(name, dialog.type()).json());
    m_newContainer = name;
}

void BackblazeB2::Add::onAdvancedClicked()
{
    onClearErrorMessage();
    Advanced advanced(*this, !canRequestPrefixes(), this);
    if (advanced.exec() == QDialog::Accepted)
        setPrefix(advanced.prefix());
}

} // namespace NVB::GUI::Settings::Account
