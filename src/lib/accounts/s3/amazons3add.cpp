#include "amazons3add.h"

#include <QCheckBox>
#include <QEventLoop>
#include <QFormLayout>
#include <QSet>

#include "accounts/lifecycle/amazonlifecyclepolicyedit.h"
#include "amazons3compatibleaddcontainer.h"
#include "cloud/amazonoperationmanager.h"
#include "cloud/info/amazons3like.h"
#include "cloud/info/infofactory.h"
#include "cloud/ioperation.h"
#include "cloud/operationmanager.h"
#include "cloud/operations/amazon/loadlifecyclepolicy.h"
#include "cloud/storageaccountconfigformat.h"
#include "core/nvldebug.h"
#include "models/models.h"

namespace NVB::GUI::Settings::Account {

namespace Column = NVB::GUI::Models::Table::NvbStorageConnectionModelInfo::Column;
namespace Record = NVB::Info::StorageAccountConfigFormat;

AmazonS3::Add::Add(QWidget* parent)
    : AmazonS3Compatible::Add(NVL::Cloud::Type::AmazonS3, false, false, parent)
    , m_glacier(new QCheckBox(tr("Archive to Glacier"), this))
{
    setEndpointPreset();
    m_glacier->hide();
    form()->addRow(QString(), m_glacier);
    connect(m_glacier, &QCheckBox::toggled, this, &Add::onClearErrorMessage);
}

Storages::AddContainer* AmazonS3::Add::addContainerDialog()
{
    const QStringList names = containers();
    auto* dialog = new AmazonS3Compatible::AddContainer(QSet<QString>(names.cbegin(), names.cend()), true, this);
    const auto info = NVL::Cloud::Info::InfoFactory::create(type());
    if (auto* s3 = dynamic_cast<NVL::Cloud::Info::AmazonS3Like*>(info.data()))
        dialog->setRegions(s3->regions());
    return dialog;
}

QJsonObject AmazonS3::Add::record() const
{
    QJsonObject record = AmazonS3Compatible::Add::record();
    record.remove(Record::Cloud::Endpoint);
    record.insert(Record::Cloud::AmazonS3::Archive2Glacier, m_glacier->isChecked());
    return record;
}

void AmazonS3::Add::onSetItem(const QModelIndex& index)
{
    if (index.isValid()) {
        const QJsonObject record
            = index.model()->index(index.row(), Column::DetailParams, index.parent()).data().toJsonObject();
        m_openedGlacier = record.value(Record::Cloud::AmazonS3::Archive2Glacier).toBool(false);
        m_glacier->setChecked(m_openedGlacier);
        m_glacier->setVisible(m_openedGlacier);
        m_openedPrefix = prefix();
    }
    AmazonS3Compatible::Add::onSetItem(index);
    // A stored endpoint of an Amazon account is not used.
    setEndpointPreset();
}

void AmazonS3::Add::onAccept()
{
    if (m_glacier->isChecked() != m_openedGlacier || (m_glacier->isChecked() && prefix() != m_openedPrefix))
        loadLifecyclePolicy();
    else
        saveConfig();
}

bool AmazonS3::Add::runOperation(const QSharedPointer<NVL::Cloud::IOperation>& operation, const QString& logLine)
{
    if (!operation) {
        onLifecyclePolicyEditError(tr("Can't start the operation"));
        return false;
    }
    QEventLoop loop;
    connect(operation.data(), &NVL::Cloud::IOperation::finished, &loop, &QEventLoop::quit);
    operation->run();
    loop.exec();
    const bool failed = operation->isError() || operation->state() != NVL::Cloud::IOperation::Finished;
    const QString message = operation->errorMessage();
    operation->remove();
    if (failed) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << logLine << message;
        onLifecyclePolicyEditError(message);
        return false;
    }
    return true;
}

void AmazonS3::Add::loadLifecyclePolicy()
{
    process(true);
    const auto check = NVL::Cloud::OperationManager::instance().checkConfig(cloudConfig());
    if (!runOperation(check, QStringLiteral("Check cloud config operation finished with error:")))
        return;
    m_checkedConfig = check->cloudConfig();
    const auto load = NVL::Cloud::AmazonOperationManager::instance().loadLifecyclePolicy(m_checkedConfig);
    if (!runOperation(load, QStringLiteral("Load LifecyclePolicy operation finished with error:")))
        return;
    QDomDocument document;
    const auto* loaded = qobject_cast<NVL::Cloud::Operation::Amazon::LoadLifecyclePolicy*>(load.data());
    const QByteArray xml = loaded ? loaded->data() : QByteArray();
    if (!xml.isEmpty()) {
        QString message;
        if (!document.setContent(xml, &message)) {
            NVL::NvlDebug(QStringLiteral("NVB")).warning()
                << QStringLiteral("Error on parce LifecyclePolicy xml, message:") << message;
            onLifecyclePolicyEditError(message);
            return;
        }
    }
    onLoadLifecyclePolicy(document);
}

void AmazonS3::Add::onLoadLifecyclePolicy(const QDomDocument& document)
{
    if (m_checkedConfig.isEmpty())
        m_checkedConfig = cloudConfig();
    NVB::Cloud::AmazonLifecyclePolicyEdit edit;
    QString error;
    if (!edit.init(document, &error)) {
        onLifecyclePolicyEditError(error);
        return;
    }
    QMap<QString, NVB::Cloud::AmazonLifecyclePolicy> policy = edit.policy();
    const QString key = QStringLiteral("NVB_%1/").arg(prefix());
    if (m_glacier->isChecked())
        policy.insert(key, NVB::Cloud::AmazonLifecyclePolicy(-1, -1, 0, -1, -1, -1));
    else
        policy.remove(key);
    edit.save(policy);
    const QDomDocument saved = edit.lifecyclePolice();
    auto& manager = NVL::Cloud::AmazonOperationManager::instance();
    const auto operation = saved.documentElement().firstChildElement().isNull()
        ? manager.deleteLifecyclePolicy(m_checkedConfig)
        : manager.saveLifecyclePolicy(m_checkedConfig, saved.toByteArray(1));
    if (!runOperation(operation, QStringLiteral("Save LifecyclePolicy operation finished with error:")))
        return;
    onSaveLifecyclePolicy();
}

void AmazonS3::Add::onSaveLifecyclePolicy()
{
    process(false);
    saveConfig();
}

void AmazonS3::Add::onLifecyclePolicyEditError(const QString& text)
{
    process(false);
    endLockUI();
    setErrorMessage(text);
}

} // namespace NVB::GUI::Settings::Account
