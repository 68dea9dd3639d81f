#include "models/filesystemcheckedproxymodel.h"

#include "core/nvldebug.h"
#include "models/basefilesmodel.h"
#include "models/models.h"

namespace NVB::GUI {

namespace {
constexpr int HiddenColumn = Models::Tree::NvbFileModelBaseModelInfo::Column::IsHidden;
}

FileSystemCheckedProxyModel::FileSystemCheckedProxyModel(QObject* parent)
    : QSortFilterProxyModel(parent)
{
    // Marks change by the hundred thousand when a big folder is checked; only
    // a change of the hidden flag can change what passes (onDataChange).
    setDynamicSortFilter(false);
}

void FileSystemCheckedProxyModel::setSourceModel(QAbstractItemModel* sourceModel)
{
    if (QAbstractItemModel* old = this->sourceModel())
        disconnect(old, &QAbstractItemModel::dataChanged, this, &FileSystemCheckedProxyModel::onDataChange);
    QSortFilterProxyModel::setSourceModel(sourceModel);
    if (sourceModel)
        connect(sourceModel, &QAbstractItemModel::dataChanged, this, &FileSystemCheckedProxyModel::onDataChange);
}

int FileSystemCheckedProxyModel::rowCount(const QModelIndex& parent) const
{
    // The base keeps the rows of the source that passed the filter.
    return QSortFilterProxyModel::rowCount(parent);
}

void FileSystemCheckedProxyModel::setIsShowHidden(bool show)
{
    m_showHidden = show;
    if (auto* files = qobject_cast<BaseFilesModel*>(sourceModel()))
        files->onUncheckedAllHiddenFiles(!show);
    else
        NVL::NvlDebug(QStringLiteral("NVB")).warning()
            << QStringLiteral("Wrong convert AbstracItemModel to BaseFileModel");
    invalidateFilter();
}

bool FileSystemCheckedProxyModel::filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const
{
    if (!sourceParent.isValid())
        return QSortFilterProxyModel::filterAcceptsRow(sourceRow, sourceParent);
    if (m_showHidden)
        return true;
    return !sourceModel()->index(sourceRow, HiddenColumn, sourceParent).data().toBool();
}

void FileSystemCheckedProxyModel::onDataChange(
    const QModelIndex& topLeft, const QModelIndex& bottomRight, const QVector<int>& roles)
{
    const bool hiddenColumn = topLeft.column() <= HiddenColumn && bottomRight.column() >= HiddenColumn;
    const bool displayed = roles.isEmpty() || roles.contains(Qt::DisplayRole);
    if (hiddenColumn && displayed)
        invalidateFilter();
}

} // namespace NVB::GUI
