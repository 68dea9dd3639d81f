#include "cloudfilesmodel.h"

#include <QAbstractItemModel>
#include <QJsonArray>

#include "cloud/cloudconfig.h"
#include "cloud/listingobject.h"
#include "cloud/operationmanager.h"
#include "cloud/operations/listing.h"
#include "cloud/storageaccountconverter.h"
#include "core/nvldebug.h"
#include "models/filenode.h"
#include "models/modelmanager.h"
#include "models/models.h"

namespace NVB::GUI {

namespace Column = Models::Table::NvbStorageConnectionModelInfo::Column;

namespace {

const QString Delimiter = QStringLiteral("/");

} // namespace

CloudFilesModel::CloudFilesModel(QObject* parent)
    : BaseFilesModel(parent)
{ }

CloudFilesModel::~CloudFilesModel()
{
    dropRunning();
}

void CloudFilesModel::dropRunning()
{
    for (Running& running : m_running) {
        running.operation->disconnect(this);
        running.operation->remove();
        qDeleteAll(running.nodes);
    }
    m_running.clear();
}

void CloudFilesModel::onSetStorage(const QUuid& id)
{
    m_storageId = id;
    QAbstractItemModel* storages = ModelManager::instance()
        ? ModelManager::instance()->create(Models::Table::NvbStorageConnectionModelInfo::Type)
        : nullptr;
    const QModelIndexList found = storages
        ? storages->match(storages->index(0, Column::ID), Qt::DisplayRole, id.toString(), 1, Qt::MatchExactly)
        : QModelIndexList();
    if (found.isEmpty()) {
        emit error(tr("The storage account %1 is not known").arg(id.toString()));
        return;
    }
    const int row = found.first().row();
    const QJsonObject record = storages->index(row, Column::DetailParams).data().toJsonObject();
    const auto type = NVL::Cloud::Type(storages->index(row, Column::Type).data().toInt());
    QString problem;
    QMap<QString, QVariant> config = NVB::Info::StorageAccountConverter::toCloudConfig(record, type, &problem);
    if (config.isEmpty()) {
        emit error(problem.isEmpty() ? tr("The storage account cannot be read") : problem);
        return;
    }
    config.insert(NVL::Cloud::Config::Id, id.toString());
    setCloudConfig(config);
}

void CloudFilesModel::setCloudConfig(const QMap<QString, QVariant>& config)
{
    dropRunning();
    beginResetModel();
    qDeleteAll(rootItem()->children());
    m_config = config;
    // The bucket itself is the tree's root, known by the empty prefix, so
    // that its top folders are the top rows.
    if (!m_rootRegistered) {
        registerNode(rootItem(), QString());
        m_rootRegistered = true;
    }
    rootItem()->setProperty(Load, Loading);
    endResetModel();
    startPage(QString(), QString(), {});
}

bool CloudFilesModel::load(const QStringList& paths, int)
{
    for (const QString& path : paths)
        startPage(path, QString(), {});
    return true;
}

void CloudFilesModel::startPage(const QString& path, const QString& marker, QList<QObject*> nodes)
{
    const auto operation = NVL::Cloud::OperationManager::instance().listing(m_config, path, Delimiter, marker, 0);
    if (!operation) {
        qDeleteAll(nodes);
        if (QObject* node = nodeByPath(path))
            node->setProperty(Load, LoadNone);
        emit error(tr("This destination cannot be listed"));
        emit loaded(path);
        return;
    }
    m_running.append({path, operation, nodes});
    NVL::Cloud::IOperation* raw = operation.data();
    connect(raw, &NVL::Cloud::IOperation::finished, this, [this, raw] { onPageFinished(raw); });
    operation->run();
}

void CloudFilesModel::onPageFinished(NVL::Cloud::IOperation* operation)
{
    int at = -1;
    for (int i = 0; i < m_running.size() && at < 0; ++i)
        at = m_running.at(i).operation.data() == operation ? i : -1;
    if (at < 0)
        return;
    Running running = m_running.takeAt(at);
    running.operation->remove();
    auto* listing = qobject_cast<NVL::Cloud::Operation::Listing*>(operation);
    if (operation->isError() || !listing) {
        qDeleteAll(running.nodes);
        // A later expansion tries again.
        if (QObject* node = nodeByPath(running.path))
            node->setProperty(Load, LoadNone);
        NVL::NvlDebug(QStringLiteral("NVB")).warning()
            << QStringLiteral("Listing of \"%1\" failed: %2").arg(running.path, operation->errorMessage());
        emit error(operation->errorMessage());
        emit loaded(running.path);
        return;
    }
    const QJsonArray data = listing->data();
    for (const QJsonValue& value : data) {
        const NVL::Cloud::Api::ListingObject object(value.toObject());
        if (!object.isFolder())
            continue;
        auto* node = new FileNode();
        const QString prefix = object.name() + Delimiter;
        node->setProperty(Name, object.name().section(Delimiter, -1));
        node->setProperty(Path, prefix);
        node->setProperty(RealPath, prefix);
        node->setProperty(Type, 1);
        node->setProperty(IsChangeable, true);
        node->setProperty(IsExpandable, true);
        running.nodes.append(node);
    }
    const QString marker = listing->marker();
    if (!marker.isEmpty()) {
        startPage(running.path, marker, running.nodes);
        return;
    }
    onResult(running.path, running.nodes);
    emit loaded(running.path);
}

} // namespace NVB::GUI
