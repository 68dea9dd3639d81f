#include "amazonlifecyclepolicymodel.h"

#include "cloud/amazonoperationmanager.h"
#include "cloud/cloudconfig.h"
#include "cloud/ioperation.h"
#include "cloud/operations/amazon/loadlifecyclepolicy.h"
#include "core/nvldebug.h"

namespace NVB::GUI {

namespace {

const char* const Policy = "lifecycle_policy";

QString transitions(const NVB::Cloud::AmazonLifecyclePolicy& policy)
{
    const QList<QPair<int, QString>> parts = {{policy.standardIa(), AmazonLifecyclePolicyModel::tr("Standard-IA in")},
        {policy.oneZoneIa(), AmazonLifecyclePolicyModel::tr("One Zone-IA in")},
        {policy.intelligentTiering(), AmazonLifecyclePolicyModel::tr("Intelligent Tiering in")},
        {policy.glacier(), AmazonLifecyclePolicyModel::tr("Glacier Flexible Retrieval in")},
        {policy.glacierDeepArchive(), AmazonLifecyclePolicyModel::tr("Glacier Deep Archive in")}};
    QStringList shown;
    for (const auto& part : parts) {
        if (part.first != -1)
            shown << QStringLiteral("%1 %2 %3")
                         .arg(part.second)
                         .arg(part.first)
                         .arg(AmazonLifecyclePolicyModel::tr("days"));
    }
    return shown.join(QStringLiteral(", "));
}

} // namespace

AmazonLifecyclePolicyModel::AmazonLifecyclePolicyModel(QObject* parent)
    : CloudFilesModel(parent)
{
    connect(this, &CloudFilesModel::error, this, &AmazonLifecyclePolicyModel::onError);
}

AmazonLifecyclePolicyModel::~AmazonLifecyclePolicyModel()
{
    if (m_operation)
        m_operation->remove();
}

void AmazonLifecyclePolicyModel::onSetStorage(const QUuid& id)
{
    m_edit.clear();
    emit beginLoad();
    CloudFilesModel::onSetStorage(id);
    if (!cloudConfig().isEmpty())
        startLoad();
}

void AmazonLifecyclePolicyModel::setCloudConfigAndLoad(const QMap<QString, QVariant>& config)
{
    m_edit.clear();
    emit beginLoad();
    setCloudConfig(config);
    startLoad();
}

void AmazonLifecyclePolicyModel::startLoad()
{
    if (m_operation)
        m_operation->remove();
    m_operation = NVL::Cloud::AmazonOperationManager::instance().loadLifecyclePolicy(cloudConfig());
    if (!m_operation) {
        onLoadError(tr("This destination has no lifecycle policies"));
        return;
    }
    connect(m_operation.data(), &NVL::Cloud::IOperation::finished, this,
        &AmazonLifecyclePolicyModel::onLifecyclePolicyOperationFinished);
    m_operation->run();
}

void AmazonLifecyclePolicyModel::onLifecyclePolicyOperationFinished()
{
    const QSharedPointer<NVL::Cloud::IOperation> operation = m_operation;
    m_operation.reset();
    if (!operation)
        return;
    operation->remove();
    NVL::NvlDebug(QStringLiteral("NVB")).info()
        << QStringLiteral("Finished LifecyclePolicyOperationFinished operation");
    if (operation->state() != NVL::Cloud::IOperation::Finished || operation->isError()) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning()
            << QStringLiteral("Error on LifecyclePolicyOperationFinished code: %1 message: %2")
                   .arg(operation->errorCode())
                   .arg(operation->errorMessage());
        onLoadError(operation->errorMessage());
        return;
    }
    if (operation->type() == NVL::Cloud::OperationType::Amazon::LoadLifecyclePolicy) {
        const auto* load = qobject_cast<NVL::Cloud::Operation::Amazon::LoadLifecyclePolicy*>(operation.data());
        QDomDocument document;
        QString message;
        if (load && !load->data().isEmpty() && !document.setContent(load->data(), &message)) {
            NVL::NvlDebug(QStringLiteral("NVB")).warning()
                << QStringLiteral("Error on parce LifecyclePolicy content, message:") << message;
            onLoadError(message);
            return;
        }
        onLifecyclePolicy(document);
        return;
    }
    onSaveFinished();
}

void AmazonLifecyclePolicyModel::onLifecyclePolicy(const QDomDocument& document)
{
    QString problem;
    if (!m_edit.init(document, &problem)) {
        onLoadError(problem);
        return;
    }
    // Rules for folders already in the tree; later folders get theirs as
    // they are listed.
    const QMap<QString, NVB::Cloud::AmazonLifecyclePolicy> policy = m_edit.policy();
    for (auto it = policy.cbegin(); it != policy.cend(); ++it) {
        if (QObject* node = nodeByPath(it.key())) {
            applyPolicy(node);
            const QModelIndex index = indexOfNode(node);
            emit dataChanged(index, index);
        }
    }
    emit endLoad();
}

void AmazonLifecyclePolicyModel::onResult(const QString& rootPath, const QList<QObject*>& objects)
{
    QStringList prefixes;
    for (QObject* object : objects) {
        if (object)
            prefixes << object->property(RealPath).toString();
    }
    CloudFilesModel::onResult(rootPath, objects);
    // Marked once they are in the tree, so that their parents show it.
    for (const QString& prefix : qAsConst(prefixes)) {
        if (QObject* node = nodeByPath(prefix))
            applyPolicy(node);
    }
}

void AmazonLifecyclePolicyModel::applyPolicy(QObject* node)
{
    const QString prefix = node->property(RealPath).toString();
    if (!m_edit.policy().contains(prefix))
        return;
    node->setProperty(Policy, QVariant::fromValue(m_edit.policy().value(prefix)));
    BaseFilesModel::setData(indexOfNode(node), StateChecked, Qt::CheckStateRole);
}

void AmazonLifecyclePolicyModel::onLoadError(const QString& text)
{
    emit onError(text);
    emit endLoad();
}

QVariant AmazonLifecyclePolicyModel::data(const QModelIndex& index, int role) const
{
    QObject* node = index.isValid() ? nodeFromIndex(index) : nullptr;
    if (node && role == Qt::UserRole && index.column() == 0)
        return node->property(Policy);
    QVariant value = CloudFilesModel::data(index, role);
    if (node && role == Qt::DisplayRole && index.column() == 0) {
        const QVariant policy = node->property(Policy);
        if (policy.canConvert<NVB::Cloud::AmazonLifecyclePolicy>()) {
            const QString text = transitions(policy.value<NVB::Cloud::AmazonLifecyclePolicy>());
            if (!text.isEmpty())
                value = QStringLiteral("%1 (transition to %2)").arg(value.toString(), text);
        }
    }
    return value;
}

bool AmazonLifecyclePolicyModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    QObject* node = index.isValid() ? nodeFromIndex(index) : nullptr;
    if (!node)
        return false;
    if (role == Qt::UserRole) {
        if (!value.canConvert<NVB::Cloud::AmazonLifecyclePolicy>())
            return false;
        node->setProperty(Policy, value);
        emit dataChanged(index, index);
        return true;
    }
    const bool accepted = CloudFilesModel::setData(index, value, role);
    if (accepted && role == Qt::CheckStateRole && value.toInt() == StateUnchecked) {
        m_edit.removePolicy(node->property(RealPath).toString());
        node->setProperty(Policy, QVariant());
        emit dataChanged(index, index);
    }
    return accepted;
}

void AmazonLifecyclePolicyModel::save()
{
    const QModelIndexList checked = match(index(0, 0), Qt::CheckStateRole, StateChecked, -1, Qt::MatchRecursive);
    QMap<QString, NVB::Cloud::AmazonLifecyclePolicy> policy;
    for (const QModelIndex& item : checked) {
        // A folder under a fully checked one is covered by its rule.
        if (item.parent().isValid() && item.parent().data(Qt::CheckStateRole).toInt() == StateChecked)
            continue;
        QObject* node = nodeFromIndex(item);
        const QVariant value = node ? node->property(Policy) : QVariant();
        if (node && value.canConvert<NVB::Cloud::AmazonLifecyclePolicy>())
            policy.insert(node->property(RealPath).toString(), value.value<NVB::Cloud::AmazonLifecyclePolicy>());
    }
    m_edit.save(policy);
    auto& manager = NVL::Cloud::AmazonOperationManager::instance();
    const QDomDocument document = m_edit.lifecyclePolice();
    if (m_operation)
        m_operation->remove();
    m_operation = document.documentElement().firstChildElement().isNull()
        ? manager.deleteLifecyclePolicy(cloudConfig())
        : manager.saveLifecyclePolicy(cloudConfig(), document.toByteArray(1));
    if (!m_operation) {
        onLoadError(tr("This destination has no lifecycle policies"));
        return;
    }
    emit beginLoad();
    connect(m_operation.data(), &NVL::Cloud::IOperation::finished, this,
        &AmazonLifecyclePolicyModel::onLifecyclePolicyOperationFinished);
    m_operation->run();
}

void AmazonLifecyclePolicyModel::onSaveFinished()
{
    emit onSubmit();
    emit endLoad();
}

} // namespace NVB::GUI
