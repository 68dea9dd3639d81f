#include "models/baseitemmodel.h"

#include "models/basemodelitem.h"

namespace NVB::GUI {

namespace {
constexpr int BaseColumnCount = 4;
}

BaseItemModel::BaseItemModel(QObject* parent)
    : QAbstractItemModel(parent)
{ }

BaseItemModel::~BaseItemModel()
{
    delete m_root;
}

bool BaseItemModel::setRootItem(BaseModelItem* root)
{
    if (m_root == root)
        return m_root != nullptr;
    beginResetModel();
    delete m_root;
    m_root = root;
    endResetModel();
    if (!m_root)
        return false;
    connect(m_root, &BaseModelItem::insertItem, this, &BaseItemModel::onInsertItem);
    connect(m_root, &BaseModelItem::updateItem, this, &BaseItemModel::onUpdateItem);
    connect(m_root, &BaseModelItem::removeItem, this, &BaseItemModel::onRemoveItem);
    // fetchMore ignores the invalid index, so the root has to be loaded here.
    if (m_root->loadStatus() == BaseModelItem::NotLoaded)
        m_root->load();
    return true;
}

BaseModelItem* BaseItemModel::itemFromIndex(const QModelIndex& index) const
{
    if (!index.isValid())
        return m_root;
    return static_cast<BaseModelItem*>(index.internalPointer());
}

QModelIndex BaseItemModel::index(int row, int column, const QModelIndex& parent) const
{
    if (!hasIndex(row, column, parent))
        return QModelIndex();
    BaseModelItem* parentItem = itemFromIndex(parent);
    BaseModelItem* child = parentItem ? parentItem->child(row) : nullptr;
    if (!child)
        return QModelIndex();
    return createIndex(row, column, child);
}

QModelIndex BaseItemModel::parent(const QModelIndex& index) const
{
    if (!index.isValid())
        return QModelIndex();
    auto* item = static_cast<BaseModelItem*>(index.internalPointer());
    BaseModelItem* parentItem = item ? item->parentItem() : nullptr;
    if (!parentItem || parentItem == m_root)
        return QModelIndex();
    return createIndex(parentItem->row(), 0, parentItem);
}

int BaseItemModel::rowCount(const QModelIndex& parent) const
{
    // Only the first column carries children, as views expect of a tree.
    if (parent.column() > 0)
        return 0;
    BaseModelItem* item = itemFromIndex(parent);
    if (!item)
        return 0;
    const int count = item->childCount();
    return item == m_announcing ? count - 1 : count;
}

int BaseItemModel::columnCount(const QModelIndex&) const
{
    return BaseColumnCount;
}

bool BaseItemModel::hasChildren(const QModelIndex& parent) const
{
    if (!parent.isValid())
        return true;
    if (parent.column() > 0)
        return false;
    BaseModelItem* item = itemFromIndex(parent);
    return item && item->expandable();
}

bool BaseItemModel::canFetchMore(const QModelIndex& parent) const
{
    if (!parent.isValid())
        return false;
    BaseModelItem* item = itemFromIndex(parent);
    return item && item->expandable() && item->loadStatus() == BaseModelItem::NotLoaded;
}

void BaseItemModel::fetchMore(const QModelIndex& parent)
{
    if (!canFetchMore(parent))
        return;
    itemFromIndex(parent)->load();
}

Qt::ItemFlags BaseItemModel::flags(const QModelIndex& index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    auto* item = static_cast<BaseModelItem*>(index.internalPointer());
    return item ? item->flags() : Qt::NoItemFlags;
}

QVariant BaseItemModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return QVariant();
    auto* item = static_cast<BaseModelItem*>(index.internalPointer());
    if (!item)
        return QVariant();
    if (role == Qt::DisplayRole) {
        switch (index.column()) {
        case 0:
            return item->displayName();
        case 1:
            return item->selectIndex();
        case 2:
            return int(item->loadStatus());
        case 3:
            return item->updateItemInProgress();
        default:
            break;
        }
    }
    return item->data(index.column(), role);
}

QVariant BaseItemModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole) {
        switch (section) {
        case 0:
            return tr("Display Name");
        case 1:
            return tr("SelectIndex");
        case 2:
            return tr("Status");
        case 3:
            return tr("ItemUpdated");
        default:
            break;
        }
    }
    return QAbstractItemModel::headerData(section, orientation, role);
}

void BaseItemModel::onInsertItem(int row, BaseModelItem* item)
{
    if (!item)
        return;
    // The item is already in its parent's list: the announcement follows the
    // fact, with nothing in between.
    const QModelIndex parentIndex = item->parentItem() ? parent(createIndex(row, 0, item)) : QModelIndex();
    m_announcing = item->parentItem() ? item->parentItem() : m_root;
    beginInsertRows(parentIndex, row, row);
    m_announcing = nullptr;
    endInsertRows();
}

void BaseItemModel::onRemoveItem(int row, BaseModelItem* item)
{
    if (!item)
        return;
    const QModelIndex parentIndex = item->parentItem() ? parent(createIndex(row, 0, item)) : QModelIndex();
    beginRemoveRows(parentIndex, row, row);
    item->removeMe();
    endRemoveRows();
}

void BaseItemModel::onUpdateItem(int row, BaseModelItem* item)
{
    // The root has no index of its own to report.
    if (!item || item == m_root)
        return;
    emit dataChanged(createIndex(row, 0, item), createIndex(row, columnCount() - 1, item), {});
}

} // namespace NVB::GUI
