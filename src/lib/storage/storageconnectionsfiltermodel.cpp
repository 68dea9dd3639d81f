#include "storageconnectionsfiltermodel.h"

#include "models/models.h"

namespace NVB::GUI {

namespace Column = Models::Table::NvbStorageConnectionModelInfo::Column;

StorageConnectionsFilterModel::StorageConnectionsFilterModel(int type, QObject* parent)
    : QSortFilterProxyModel(parent)
    , m_type(type)
{
    setFilterKeyColumn(Column::Type);
    setDynamicSortFilter(true);
}

bool StorageConnectionsFilterModel::filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const
{
    return sourceModel()->index(sourceRow, Column::Type, sourceParent).data().toInt() == m_type;
}

} // namespace NVB::GUI
