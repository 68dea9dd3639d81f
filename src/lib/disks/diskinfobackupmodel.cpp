#include "diskinfobackupmodel.h"

#include "app/delegates/sizedelegate.h"

namespace NVB::GUI {

namespace {

QVariant sizeText(const QVariant& value, const QModelIndex& index, int role)
{
    if (role == Qt::DisplayRole && (index.column() == 2 || index.column() == 3) && value.isValid())
        return SizeDelegate::toText(value, QLocale());
    return value;
}

} // namespace

QVariant DiskInfoBackupModel::diskData(const QModelIndex& index, int role) const
{
    return sizeText(DiskInfoModel::diskData(index, role), index, role);
}

QVariant DiskInfoBackupModel::volumeData(const QModelIndex& index, int role) const
{
    return sizeText(DiskInfoModel::volumeData(index, role), index, role);
}

void DiskInfoBackupModel::announceAll()
{
    const int disks = rowCount();
    for (int row = 0; row < disks; ++row) {
        const QModelIndex disk = index(row, 0);
        emit dataChanged(disk, disk);
        if (const int volumes = rowCount(disk))
            emit dataChanged(index(0, 0, disk), index(volumes - 1, 0, disk));
    }
}

void DiskInfoBackupModel::selectAllDrives()
{
    if (!diskInfo())
        return;
    diskInfo()->selectAllDrives();
    announceAll();
}

void DiskInfoBackupModel::selectSystemRequired()
{
    if (!diskInfo())
        return;
    diskInfo()->selectSystemRequired();
    announceAll();
}

bool DiskInfoBackupModel::isAllDrivesSelected() const
{
    return diskInfo() && diskInfo()->isAllDrivesSelected();
}

} // namespace NVB::GUI
