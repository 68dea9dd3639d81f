#include "storageconnectionssortmodel.h"

#include "cloud/cloudtype.h"
#include "models/models.h"

namespace NVB::GUI {

namespace Column = Models::Table::NvbStorageConnectionModelInfo::Column;

StorageConnectionsSortModel::StorageConnectionsSortModel(QObject* parent)
    : QSortFilterProxyModel(parent)
{
    setDynamicSortFilter(true);
}

void StorageConnectionsSortModel::setSkipOpenStack(bool skip)
{
    if (m_skipOpenStack == skip)
        return;
    m_skipOpenStack = skip;
    invalidateFilter();
}

bool StorageConnectionsSortModel::lessThan(const QModelIndex& left, const QModelIndex& right) const
{
    const QAbstractItemModel* model = sourceModel();
    const int local = int(NVL::Cloud::Type::FileSystem);
    const bool leftLocal = model->index(left.row(), Column::Type, left.parent()).data().toInt() == local;
    const bool rightLocal = model->index(right.row(), Column::Type, right.parent()).data().toInt() == local;
    if (leftLocal != rightLocal)
        return leftLocal;
    const QString leftName = model->index(left.row(), Column::DisplayName, left.parent()).data().toString().toUpper();
    const QString rightName
        = model->index(right.row(), Column::DisplayName, right.parent()).data().toString().toUpper();
    return leftName < rightName;
}

bool StorageConnectionsSortModel::filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const
{
    if (!m_skipOpenStack)
        return true;
    const int type = sourceModel()->index(sourceRow, Column::Type, sourceParent).data().toInt();
    return !NVL::Cloud::OpenStack.contains(NVL::Cloud::Type(type));
}

} // namespace NVB::GUI
