#include "plans/planfulltablemodel.h"

#include "models/modelmanager.h"
#include "models/models.h"
#include "plans/filterplantablemodel.h"
#include "plans/planxmllist.h"
#include "records/plan/base.h"

namespace NVB::GUI {

namespace TableColumn = Models::Table::NvbPlanModelInfo::Column;
namespace ViewColumn = Models::Table::NvbPlanBackupModelInfo::Column;
namespace ViewName = Models::Table::NvbPlanBackupModelInfo::Name;

namespace {

constexpr int FullColumnCount = Models::Table::NvbPlanModelInfo::Column::Count;

// The views put the last run's time before its message; the table the other
// way round.
int tableColumn(int viewColumn)
{
    switch (viewColumn) {
    case ViewColumn::LastRunTime:
        return TableColumn::LastRunTime;
    case ViewColumn::LastRunMessage:
        return TableColumn::LastRunMessage;
    default:
        return viewColumn;
    }
}

} // namespace

PlanFullTableModel::PlanFullTableModel(QObject* parent)
    : BaseModel(parent)
{
    if (QPointer<PlanXmlList> list = PlanXmlList::instance(); !list.isNull()) {
        connect(list, &PlanXmlList::complite, this, &PlanFullTableModel::onPlanXmlLoad);
        connect(list, &PlanXmlList::update, this, &PlanFullTableModel::onPlanXmlLoad);
        connect(list, &PlanXmlList::error, this, &PlanFullTableModel::error);
    }
}

PlanFullTableModel::~PlanFullTableModel() = default;

QModelIndex PlanFullTableModel::index(int row, int column, const QModelIndex& parent) const
{
    if (parent.isValid() || row < 0 || column < 0 || row >= rowCount() || column >= columnCount())
        return {};
    return createIndex(row, column);
}

QModelIndex PlanFullTableModel::parent(const QModelIndex&) const
{
    return {};
}

int PlanFullTableModel::rowCount(const QModelIndex& parent) const
{
    if (parent.isValid() || m_proxy.isNull())
        return 0;
    return m_proxy->rowCount();
}

int PlanFullTableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : FullColumnCount;
}

Qt::ItemFlags PlanFullTableModel::flags(const QModelIndex& index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable;
}

QVariant PlanFullTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && !m_proxy.isNull())
        return m_proxy->headerData(section, orientation, role);
    return BaseModel::headerData(section, orientation, role);
}

QVariant PlanFullTableModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || m_proxy.isNull())
        return {};
    return m_proxy->index(index.row(), index.column()).data(role);
}

bool PlanFullTableModel::initProxy(int subType)
{
    QPointer<ModelManager> manager = ModelManager::instance();
    if (manager.isNull())
        return false;
    QAbstractItemModel* table = manager->create(Models::Table::NvbPlanModelInfo::Type);
    if (!table)
        return false;
    connect(table, SIGNAL(complite()), this, SIGNAL(complite()));
    connect(table, SIGNAL(updated()), this, SIGNAL(updated()));
    connect(table, SIGNAL(error(QString)), this, SIGNAL(error(QString)));

    auto* proxy = new FilterPlanTableModel(subType, this);
    proxy->setSourceModel(table);
    proxy->sort(TableColumn::Name, Qt::AscendingOrder);
    if (!m_proxy.isNull()) {
        beginResetModel();
        delete m_proxy;
        m_proxy = proxy;
        endResetModel();
    } else if (proxy->rowCount() > 0) {
        // The rows that exist come in as one insertion.
        beginInsertRows(QModelIndex(), 0, proxy->rowCount() - 1);
        m_proxy = proxy;
        endInsertRows();
    } else {
        m_proxy = proxy;
    }

    connect(m_proxy, &QAbstractItemModel::rowsAboutToBeInserted, this, &PlanFullTableModel::onRowsAboutToBeInserted);
    connect(m_proxy, &QAbstractItemModel::rowsAboutToBeRemoved, this, &PlanFullTableModel::onRowsAboutToBeRemoved);
    connect(m_proxy, &QAbstractItemModel::rowsInserted, this, &PlanFullTableModel::onRowsInserted);
    connect(m_proxy, &QAbstractItemModel::rowsRemoved, this, &PlanFullTableModel::onRowsRemoved);
    connect(m_proxy, &QAbstractItemModel::dataChanged, this, &PlanFullTableModel::onDataChanged);
    connect(m_proxy, &QAbstractItemModel::layoutAboutToBeChanged, this, &PlanFullTableModel::onLayoutAboutToBeChanged);
    connect(m_proxy, &QAbstractItemModel::layoutChanged, this, &PlanFullTableModel::onLayoutChanged);
    connect(m_proxy, &QAbstractItemModel::modelAboutToBeReset, this, &PlanFullTableModel::onModelAboutToBeReset);
    connect(m_proxy, &QAbstractItemModel::modelReset, this, &PlanFullTableModel::onModelReset);
    return true;
}

// Rows are announced while the proxy announces them, so that whoever listens
// here sees the counts before and after the change as the change itself does.
void PlanFullTableModel::onRowsAboutToBeInserted(const QModelIndex& parent, int first, int last)
{
    if (parent.isValid())
        return;
    beginInsertRows(QModelIndex(), first, last);
}

void PlanFullTableModel::onRowsAboutToBeRemoved(const QModelIndex& parent, int first, int last)
{
    if (parent.isValid())
        return;
    beginRemoveRows(QModelIndex(), first, last);
}

void PlanFullTableModel::onRowsInserted(const QModelIndex& parent, int, int)
{
    if (parent.isValid())
        return;
    endInsertRows();
}

void PlanFullTableModel::onRowsRemoved(const QModelIndex& parent, int, int)
{
    if (parent.isValid())
        return;
    endRemoveRows();
}

void PlanFullTableModel::onDataChanged(
    const QModelIndex& topLeft, const QModelIndex& bottomRight, const QVector<int>& roles)
{
    if (!topLeft.isValid() || !bottomRight.isValid() || topLeft.parent().isValid())
        return;
    // A changed summary touches the view's columns that lie behind the
    // table's too (the XML and the progress steps).
    const int right = bottomRight.column() >= FullColumnCount - 1 ? columnCount() - 1 : bottomRight.column();
    emit dataChanged(index(topLeft.row(), topLeft.column()), index(bottomRight.row(), right), roles);
}

void PlanFullTableModel::onPlanXmlLoad(const QUuid& id)
{
    QPointer<PlanXmlList> list = PlanXmlList::instance();
    if (list.isNull() || !list->containts(id) || rowCount() == 0)
        return;
    const QModelIndexList found = match(index(0, 0), Qt::DisplayRole, id.toString(), 1, Qt::MatchExactly);
    if (found.isEmpty())
        return;
    const int row = found.first().row();
    emit dataChanged(index(row, 0), index(row, columnCount() - 1));
}

QVariant PlanFullTableModel::viewData(const QModelIndex& index, int role, int subType) const
{
    if (!index.isValid() || m_proxy.isNull() || index.column() < 0 || index.column() > ViewColumn::ProgressSteps)
        return {};
    const int column = index.column();
    // The table's own columns go through with whatever role is asked, so that
    // its running and result icons reach the views.
    if (column != ViewColumn::ProgressSteps && column != ViewColumn::StorageID && column != ViewColumn::PlanXML)
        return m_proxy->index(index.row(), tableColumn(column)).data(role);
    if (role != Qt::DisplayRole)
        return {};
    if (column == ViewColumn::ProgressSteps) {
        // The proxy stops at the table's column count; the progress steps
        // are read from the table itself, by number.
        const QModelIndex source = m_proxy->mapToSource(m_proxy->index(index.row(), 0));
        if (!source.isValid())
            return {};
        return source.model()->index(source.row(), TableColumn::ProgressSteps).data(role);
    }

    // Storage and XML come from the plan itself and stay blank until its XML
    // is held; onPlanXmlLoad fills them in.
    const QUuid id(m_proxy->index(index.row(), TableColumn::ID).data(Qt::DisplayRole).toString());
    QPointer<PlanXmlList> list = PlanXmlList::instance();
    if (list.isNull() || !list->containts(id))
        return {};
    NVB::Info::Plan::Base* plan = list->plan(id);
    if (!plan || plan->subtype() != subType)
        return {};
    if (column == ViewColumn::StorageID)
        return plan->storage();
    return list->planXml(id).toByteArray(1);
}

QVariant PlanFullTableModel::viewHeaderData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return BaseModel::headerData(section, orientation, role);
    switch (section) {
    case ViewColumn::ID:
        return ViewName::ID;
    case ViewColumn::Name:
        return ViewName::Name;
    case ViewColumn::SubType:
        return ViewName::SubType;
    case ViewColumn::Shedule:
        return ViewName::Shedule;
    case ViewColumn::Status:
        return ViewName::Status;
    case ViewColumn::StorageID:
        return ViewName::StorageID;
    case ViewColumn::LastRunTime:
        return ViewName::LastRunTime;
    case ViewColumn::LastRunStatus:
        return ViewName::LastRunStatus;
    case ViewColumn::LastRunMessage:
        return ViewName::LastRunMessage;
    case ViewColumn::NextRunTime:
        return ViewName::NextRunTime;
    case ViewColumn::LastDuration:
        return ViewName::LastDuration;
    case ViewColumn::LastUploadedCount:
        return ViewName::LastUploadedCount;
    case ViewColumn::LastFailedCount:
        return ViewName::LastFailedCount;
    case ViewColumn::LastUploadedSize:
        return ViewName::LastUploadedSize;
    case ViewColumn::PlanXML:
        return ViewName::PlanXML;
    default:
        return {};
    }
}

int PlanFullTableModel::viewColumnCount() const
{
    return ViewColumn::Count;
}

void PlanFullTableModel::onLayoutAboutToBeChanged()
{
    emit layoutAboutToBeChanged();
    m_layoutOwn = persistentIndexList();
    m_layoutSource.clear();
    m_layoutSource.reserve(m_layoutOwn.size());
    for (const QModelIndex& own : qAsConst(m_layoutOwn))
        m_layoutSource.append(QPersistentModelIndex(m_proxy->index(own.row(), 0)));
}

void PlanFullTableModel::onLayoutChanged()
{
    QModelIndexList moved;
    moved.reserve(m_layoutOwn.size());
    for (int i = 0; i < m_layoutOwn.size(); ++i) {
        const QPersistentModelIndex& source = m_layoutSource.at(i);
        moved.append(source.isValid() ? index(source.row(), m_layoutOwn.at(i).column()) : QModelIndex());
    }
    changePersistentIndexList(m_layoutOwn, moved);
    m_layoutOwn.clear();
    m_layoutSource.clear();
    emit layoutChanged();
}

void PlanFullTableModel::onModelAboutToBeReset()
{
    beginResetModel();
}

void PlanFullTableModel::onModelReset()
{
    endResetModel();
}

} // namespace NVB::GUI
