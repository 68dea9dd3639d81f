#include "storageconnectionscloudmodel.h"

#include "cloud/cloudtype.h"
#include "models/models.h"

namespace NVB::GUI {

namespace Column = Models::Table::NvbStorageConnectionModelInfo::Column;

StorageConnectionsCloudModel::StorageConnectionsCloudModel(QObject* parent)
    : QSortFilterProxyModel(parent)
{
    setFilterKeyColumn(Column::Type);
    setDynamicSortFilter(true);
}

bool StorageConnectionsCloudModel::filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const
{
    return sourceModel()->index(sourceRow, Column::Type, sourceParent).data().toInt()
        != int(NVL::Cloud::Type::FileSystem);
}

} // namespace NVB::GUI
