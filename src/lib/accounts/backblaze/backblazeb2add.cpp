#include "backblazeb2add.h"

#include <QComboBox>
#include <QFormLayout>
#include <QJsonArray>
#include <QLineEdit>
#include <QPushButton>
#include <QSet>
#include <QToolButton>

#include "accounts/advanced/advanced.h"
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
    : BucketAdd(NVL::Cloud::Type::BackBlaze, parent)
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
    auto* form = new QFormLayout;
    form->addRow(tr("Display Name:"), m_displayName);
    form->addRow(tr("Key ID:"), m_keyId);
    form->addRow(tr("Application Key:"), m_key);
    form->addRow(tr("Bucket:"), bucketRow());
    setProviderLayout(form);

    connect(m_displayName, &QLineEdit::textChanged, this, &Add::onDataChanged);
    for (QLineEdit* line : {m_keyId, m_key}) {
        connect(line, &QLineEdit::textChanged, this, &Add::onDataChanged);
        connect(line, &QLineEdit::textChanged, this, &Add::onCredsReset);
    }
    connect(bucketCombo(), QOverload<int>::of(&QComboBox::currentIndexChanged), this, &Add::onDataChanged);
    connect(addBucketButton(), &QToolButton::clicked, this, &Add::onAddBucketClicked);
}

void BackblazeB2::Add::onDataChanged()
{
    onClearErrorMessage();
    bool filled = true;
    for (QLineEdit* line : {m_displayName, m_keyId, m_key})
        filled = filled && !line->text().trimmed().isEmpty();
    updateBuckets(filled);
}

void BackblazeB2::Add::onCredsReset()
{
    m_ids.clear();
    resetBuckets();
}

QMap<QString, QVariant> BackblazeB2::Add::cloudConfig() const
{
    QMap<QString, QVariant> config = Storages::Add::cloudConfig();
    config.insert(B2::AccountId, m_keyId->text().trimmed());
    config.insert(B2::ApplicationKey, m_key->text().trimmed());
    const QString name = bucketCombo()->currentText().trimmed();
    if (!name.isEmpty())
        config.insert(NVL::Cloud::OperationConfig::ContainerName, QStringLiteral("%1|%2").arg(m_ids.value(name), name));
    return config;
}

bool BackblazeB2::Add::loadContainersFinished(NVL::Cloud::Operation::ListContainers* operation)
{
    m_ids.clear();
    const QJsonArray data = operation->data();
    for (const QJsonValue& value : data)
        m_ids.insert(value.toObject().value(QStringLiteral("Name")).toString(),
            value.toObject().value(QStringLiteral("Id")).toString());
    fillBuckets(data);
    onDataChanged();
    return true;
}

void BackblazeB2::Add::operationErrorHandler(int code, const QString& message)
{
    Storages::Add::operationErrorHandler(code, code == 9 ? tr("Wrong Key ID or Application Key") : message);
}

void BackblazeB2::Add::saveConfig()
{
    const QString name = bucketCombo()->currentText().trimmed();
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
    setSavedContainer(record.value(Record::Cloud::ContainerName).toString());
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
