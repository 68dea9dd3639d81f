#include "models/basefilesmodel.h"

#include <utility>

#include <QQueue>
#include <QVector>

#include "core/nvldebug.h"
#include "models/filenode.h"
#include "models/models.h"

namespace NVB::GUI {

namespace FileColumn = Models::Tree::NvbFileModelBaseModelInfo::Column;

const char* const BaseFilesModel::Name = "name";
const char* const BaseFilesModel::Path = "path";
const char* const BaseFilesModel::RealPath = "real_path";
const char* const BaseFilesModel::IsChangeable = "is_changeable";
const char* const BaseFilesModel::IsExpandable = "is_expandable";
const char* const BaseFilesModel::Type = "type";
const char* const BaseFilesModel::IsHidden = "is_hidden";
const char* const BaseFilesModel::IsSymlink = "is_symlink";
const char* const BaseFilesModel::Checked = NVB::GUI::Checked;
const char* const BaseFilesModel::Row = NVB::GUI::Row;
const char* const BaseFilesModel::Load = NVB::GUI::Key;

BaseFilesModel::BaseFilesModel(QObject* parent)
    : QAbstractItemModel(parent)
    , m_root(new FileNode())
{
    m_columns.insert(FileColumn::Name, Name);
    m_columns.insert(FileColumn::Path, Path);
    m_columns.insert(FileColumn::RealPath, RealPath);
    m_columns.insert(FileColumn::IsChangeable, IsChangeable);
    m_columns.insert(FileColumn::IsExpandable, IsExpandable);
    m_columns.insert(FileColumn::Type, Type);
    m_columns.insert(FileColumn::IsHidden, IsHidden);
    m_root->setProperty(Checked, StateUnchecked);
    m_root->setProperty(Load, Loaded);
    m_root->setProperty(IsExpandable, true);
}

BaseFilesModel::~BaseFilesModel()
{
    m_items.clear();
    m_forgetting = true;
    delete m_root;
}

QObject* BaseFilesModel::nodeFromIndex(const QModelIndex& index) const
{
    if (!index.isValid())
        return m_root;
    if (index.model() != this)
        return nullptr;
    return static_cast<QObject*>(index.internalPointer());
}

QModelIndex BaseFilesModel::indexOfNode(QObject* node, int column) const
{
    if (!node || node == m_root)
        return QModelIndex();
    return createIndex(node->property(Row).toInt(), column, node);
}

int BaseFilesModel::state(const QObject* node)
{
    return node ? node->property(Checked).toInt() : StateUnchecked;
}

void BaseFilesModel::registerNode(QObject* node)
{
    registerNode(node, node->property(RealPath).toString());
}

void BaseFilesModel::registerNode(QObject* node, const QString& realPath)
{
    connect(node, &QObject::destroyed, this, &BaseFilesModel::onDestoryedItem);
    m_items.insert(realPath, node);
}

QModelIndex BaseFilesModel::index(int row, int column, const QModelIndex& parent) const
{
    if (row < 0 || column < 0 || column >= columnCount(parent) || row >= rowCount(parent))
        return QModelIndex();
    QObject* node = nodeFromIndex(parent);
    if (!node)
        return QModelIndex();
    return createIndex(row, column, node->children().at(row));
}

QModelIndex BaseFilesModel::parent(const QModelIndex& index) const
{
    QObject* node = index.isValid() ? nodeFromIndex(index) : nullptr;
    if (!node)
        return QModelIndex();
    return indexOfNode(node->parent());
}

int BaseFilesModel::rowCount(const QModelIndex& parent) const
{
    if (parent.column() > 0)
        return 0;
    QObject* node = nodeFromIndex(parent);
    if (!node)
        return 0;
    const int count = node->children().size();
    return node == m_announcing ? count - m_announcingCount : count;
}

int BaseFilesModel::columnCount(const QModelIndex& parent) const
{
    return parent.column() > 0 ? 0 : Models::Tree::NvbFileModelBaseModelInfo::Column::Count;
}

bool BaseFilesModel::hasChildren(const QModelIndex& parent) const
{
    if (!parent.isValid())
        return rowCount(parent) > 0;
    if (parent.column() > 0)
        return false;
    QObject* node = nodeFromIndex(parent);
    if (!node || !node->property(IsExpandable).toBool())
        return false;
    // A folder that turned out empty loses its expander.
    return node->property(Load).toInt() != Loaded || rowCount(parent) > 0;
}

QVariant BaseFilesModel::data(const QModelIndex& index, int role) const
{
    QObject* node = index.isValid() ? nodeFromIndex(index) : nullptr;
    if (!node)
        return QVariant();
    switch (role) {
    case Qt::CheckStateRole:
        return index.column() == 0 ? QVariant(state(node)) : QVariant();
    case Qt::DecorationRole:
        if (index.column() != 0)
            return QVariant();
        switch (node->property(Type).toInt()) {
        case 0:
            return m_iconProvider.icon(QFileIconProvider::File);
        case 1:
            return m_iconProvider.icon(QFileIconProvider::Folder);
        case 2:
            return m_iconProvider.icon(QFileIconProvider::Computer);
        default:
            return QVariant();
        }
    case Qt::DisplayRole: {
        const char* property = m_columns.value(index.column(), nullptr);
        return property ? node->property(property) : QVariant();
    }
    default:
        return QVariant();
    }
}

Qt::ItemFlags BaseFilesModel::flags(const QModelIndex& index) const
{
    QObject* node = index.isValid() ? nodeFromIndex(index) : nullptr;
    if (!node)
        return Qt::NoItemFlags;
    Qt::ItemFlags result = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    if (index.column() == 0 && node->property(IsChangeable).toBool())
        result |= Qt::ItemIsUserCheckable;
    return result;
}

QVariant BaseFilesModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole) {
        namespace Header = Models::Tree::NvbFileModelBaseModelInfo::Name;
        switch (section) {
        case FileColumn::Name:
            return Header::Name;
        case FileColumn::Path:
            return Header::Path;
        case FileColumn::RealPath:
            return Header::RealPath;
        case FileColumn::IsChangeable:
            return Header::IsChangeable;
        case FileColumn::IsExpandable:
            return Header::IsExpandable;
        case FileColumn::Type:
            return Header::Type;
        case FileColumn::IsHidden:
            return Header::IsHidden;
        default:
            break;
        }
    }
    return QAbstractItemModel::headerData(section, orientation, role);
}

bool BaseFilesModel::canFetchMore(const QModelIndex& parent) const
{
    QObject* node = parent.isValid() ? nodeFromIndex(parent) : nullptr;
    return node && node->property(IsExpandable).toBool() && node->property(Load).toInt() == LoadNone;
}

void BaseFilesModel::fetchMore(const QModelIndex& parent)
{
    QObject* node = parent.isValid() ? nodeFromIndex(parent) : nullptr;
    if (!node)
        return;
    node->setProperty(Load, Loading);
    const QString realPath = node->property(m_columns.value(FileColumn::RealPath)).toString();
    load(QStringList {realPath}, 0);
}

QModelIndex BaseFilesModel::indexByPath(const QString& path) const
{
    return indexOfNode(m_items.value(path, nullptr));
}

bool BaseFilesModel::hasMatchFirst(const QModelIndex& start, int role, const QVariant& value, bool withHidden) const
{
    if (!start.isValid())
        return false;
    const QModelIndex parentIndex = start.parent();
    const int rows = rowCount(parentIndex);
    for (int row = start.row(); row < rows; ++row) {
        const QModelIndex sibling = index(row, start.column(), parentIndex);
        if (!withHidden && nodeFromIndex(sibling)->property(IsHidden).toBool())
            continue;
        if (data(sibling, role) == value)
            return true;
    }
    return false;
}

void BaseFilesModel::onResult(const QString& rootPath, const QList<QObject*>& objects)
{
    QObject* node = m_items.value(rootPath, nullptr);
    if (!node) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << QStringLiteral("This path dont exist") << rootPath;
        return;
    }
    node->setProperty(Load, Loaded);
    const int childState = state(node) == StateChecked ? StateChecked : StateUnchecked;
    int duplicates = 0;
    m_items.reserve(m_items.size() + objects.size());
    for (QObject* object : objects) {
        if (!object) {
            ++duplicates;
            continue;
        }
        const QString realPath = object->property(RealPath).toString();
        if (m_items.contains(realPath)) {
            ++duplicates;
            object->deleteLater();
            continue;
        }
        object->setProperty(Row, node->children().size());
        object->setParent(node);
        object->setProperty(Load, LoadNone);
        object->setProperty(Checked, childState);
        registerNode(object, realPath);
    }

    // The rows are in place before they are announced.
    const int childCount = node->children().size();
    const int first = duplicates - objects.size() + childCount;
    const int last = childCount > 0 ? childCount - 1 : 0;
    const int added = childCount - qMax(first, 0);
    // A listing that adds nothing (an empty folder, or only paths the tree
    // already holds) would give a range whose first row lies past its last,
    // which Qt refuses in debug builds; views have nothing to learn from it.
    if (added <= 0 || first > last)
        return;
    const QModelIndex parentIndex = indexOfNode(node);
    m_announcing = node;
    m_announcingCount = qMax(added, 0);
    beginInsertRows(parentIndex, first, last);
    m_announcing = nullptr;
    m_announcingCount = 0;
    endInsertRows();
}

void BaseFilesModel::onDestoryedItem(QObject* item)
{
    QObject* node = item ? item : sender();
    if (!node)
        return;
    if (m_forgetting)
        return;
    // A node of declared properties has lost them by the time destroyed() is
    // sent; only a plain QObject still tells its path here. The model's own
    // deletions forget their nodes beforehand (forgetSubtree), so the search
    // by pointer below serves nodes that someone else deletes.
    const QString realPath = node->property(RealPath).toString();
    auto found = m_items.find(realPath);
    if (found != m_items.end() && found.value() == node) {
        m_items.erase(found);
        return;
    }
    for (auto it = m_items.begin(); it != m_items.end(); ++it) {
        if (it.value() == node) {
            m_items.erase(it);
            return;
        }
    }
}

void BaseFilesModel::forgetSubtree(QObject* top)
{
    QVector<QObject*> pending {top};
    while (!pending.isEmpty()) {
        QObject* node = pending.takeLast();
        auto found = m_items.find(node->property(RealPath).toString());
        if (found != m_items.end() && found.value() == node)
            m_items.erase(found);
        for (QObject* child : node->children())
            pending.append(child);
    }
}

void BaseFilesModel::onCollapse(const QModelIndex& index)
{
    QObject* node = index.isValid() ? nodeFromIndex(index) : nullptr;
    if (!node || node->children().isEmpty())
        return;
    const QModelIndex first = index.column() == 0 ? index : index.sibling(index.row(), 0);
    beginRemoveRows(first, 0, node->children().size() - 1);
    // Front to back: each child leaves its parent's list at the front.
    const QObjectList children = node->children();
    for (QObject* child : children)
        forgetSubtree(child);
    m_forgetting = true;
    for (QObject* child : children)
        delete child;
    m_forgetting = false;
    node->setProperty(Load, LoadNone);
    endRemoveRows();
}

void BaseFilesModel::onUncheckedAllHiddenFiles(bool unchecked)
{
    m_uncheckedAllHiddenFiles = unchecked;
}

bool BaseFilesModel::checkIsObjNotNullRoot(const QObject* node) const
{
    return node && node != m_root;
}

bool BaseFilesModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (role != Qt::CheckStateRole || !index.isValid() || index.column() != 0)
        return false;
    QObject* node = nodeFromIndex(index);
    if (!node)
        return false;
    const int newState = value.toInt();
    if (newState == state(node))
        return false;
    switch (newState) {
    case StateUnchecked:
    case StatePartiallyChecked:
    case StateChecked:
    case StateIncomplete:
        break;
    default:
        return false;
    }

    ++m_setDataDepth;
    setStateOf(node, newState);
    switch (newState) {
    case StateUnchecked:
        setDataUnchecked(index);
        setDataUncheckedParent(index);
        break;
    case StatePartiallyChecked:
        setDataPartiallyChecked(index);
        break;
    case StateChecked:
        setDataChecked(index);
        setDataCheckedParent(index);
        break;
    case StateIncomplete:
        setDataIncompliteChecked(index);
        break;
    }
    --m_setDataDepth;
    if (m_setDataDepth == 0)
        flushChanges();
    return true;
}

void BaseFilesModel::setStateOf(QObject* node, int newState)
{
    node->setProperty(Checked, newState);
    QObject* parentNode = node->parent();
    const int row = node->property(Row).toInt();
    auto found = m_changed.find(parentNode);
    if (found == m_changed.end()) {
        m_changed.insert(parentNode, ChangedRows {row, row});
    } else {
        found->first = qMin(found->first, row);
        found->last = qMax(found->last, row);
    }
}

void BaseFilesModel::flushChanges()
{
    const QHash<QObject*, ChangedRows> changed = std::move(m_changed);
    m_changed.clear();
    for (auto it = changed.constBegin(); it != changed.constEnd(); ++it) {
        const QModelIndex parentIndex = indexOfNode(it.key());
        emit dataChanged(index(it->first, 0, parentIndex), index(it->last, 0, parentIndex), {Qt::CheckStateRole});
    }
}

void BaseFilesModel::setDescendants(QObject* node, int newState)
{
    QQueue<QObject*> queue;
    for (QObject* child : node->children())
        queue.enqueue(child);
    while (!queue.isEmpty()) {
        QObject* current = queue.dequeue();
        // A subtree whose top has the state already keeps its own marks.
        if (state(current) == newState)
            continue;
        setStateOf(current, newState);
        for (QObject* child : current->children())
            queue.enqueue(child);
    }
}

void BaseFilesModel::setDataChecked(const QModelIndex& index)
{
    if (QObject* node = nodeFromIndex(index))
        setDescendants(node, StateChecked);
}

void BaseFilesModel::setDataUnchecked(const QModelIndex& index)
{
    if (QObject* node = nodeFromIndex(index))
        setDescendants(node, StateUnchecked);
}

void BaseFilesModel::setDataPartiallyChecked(const QModelIndex& index)
{
    QObject* node = nodeFromIndex(index);
    for (QObject* up = node ? node->parent() : nullptr; checkIsObjNotNullRoot(up) && state(up) == StateChecked;
         up = up->parent())
        setStateOf(up, StatePartiallyChecked);
}

void BaseFilesModel::setDataIncompliteChecked(const QModelIndex& index)
{
    QObject* node = nodeFromIndex(index);
    for (QObject* up = node ? node->parent() : nullptr; checkIsObjNotNullRoot(up) && state(up) == StateUnchecked;
         up = up->parent())
        setStateOf(up, StateIncomplete);
}

void BaseFilesModel::setDataCheckedParent(const QModelIndex& index)
{
    QObject* node = nodeFromIndex(index);
    for (QObject* up = node ? node->parent() : nullptr; checkIsObjNotNullRoot(up) && state(up) != StateChecked;
         up = up->parent()) {
        const int upState = state(up);
        if (upState == StateUnchecked) {
            setStateOf(up, StateIncomplete);
        } else if (upState == StatePartiallyChecked) {
            const QModelIndex first = this->index(0, 0, indexOfNode(up));
            if (!hasMatchFirst(first, Qt::CheckStateRole, StateUnchecked, true)
                && !hasMatchFirst(first, Qt::CheckStateRole, StatePartiallyChecked, true)
                && !hasMatchFirst(first, Qt::CheckStateRole, StateIncomplete, true))
                setStateOf(up, StateChecked);
        }
    }
}

void BaseFilesModel::setDataUncheckedParent(const QModelIndex& index)
{
    QObject* node = nodeFromIndex(index);
    for (QObject* up = node ? node->parent() : nullptr; checkIsObjNotNullRoot(up) && state(up) != StateUnchecked;
         up = up->parent()) {
        const QModelIndex upIndex = indexOfNode(up);
        const QModelIndex first = this->index(0, 0, upIndex);
        if (!hasMatchFirst(first, Qt::CheckStateRole, StateChecked, true)
            && !hasMatchFirst(first, Qt::CheckStateRole, StatePartiallyChecked, true)
            && !hasMatchFirst(first, Qt::CheckStateRole, StateIncomplete, true)) {
            setStateOf(up, StateUnchecked);
            continue;
        }
        // A folder with a marked child keeps its own mark: a checked folder
        // stays checked, so that what is created in it later is still taken,
        // and the child it lost goes to the exclusions.
        break;
    }
}

} // namespace NVB::GUI
