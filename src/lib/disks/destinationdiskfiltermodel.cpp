#include "destinationdiskfiltermodel.h"

#include "models/models.h"

namespace NVB::GUI {

namespace Column = Models::Tree::NvbDiskInfoModelInfo::Column;

DestinationDiskFilterModel::DestinationDiskFilterModel(long long requiredSize, QObject* parent)
    : QSortFilterProxyModel(parent)
    , m_requiredSize(requiredSize)
{ }

void DestinationDiskFilterModel::addPtherSelectedDisk(const QUuid& id)
{
    m_otherSelected.insert(id);
    invalidate();
}

void DestinationDiskFilterModel::removeOtherSelectedDisk(const QUuid& id)
{
    m_otherSelected.remove(id);
    invalidate();
}

Qt::ItemFlags DestinationDiskFilterModel::flags(const QModelIndex& index) const
{
    Qt::ItemFlags result = QSortFilterProxyModel::flags(index);
    const QModelIndex source = mapToSource(index);
    if (!source.isValid() || !sourceModel())
        return result;
    // Only disks are judged: the row's disk under the root, by row number.
    const int row = source.parent().isValid() ? source.parent().row() : source.row();
    const QUuid disk = sourceModel()->index(row, Column::DiskId).data().toUuid();
    bool known = false;
    const long long capacity = sourceModel()->index(row, Column::Size).data().toLongLong(&known);
    if ((known && capacity < m_requiredSize) || m_otherSelected.contains(disk))
        result &= ~(Qt::ItemIsSelectable | Qt::ItemIsEnabled);
    return result;
}

} // namespace NVB::GUI
