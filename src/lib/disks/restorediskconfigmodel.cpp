#include "restorediskconfigmodel.h"

#include <QLocale>

namespace NVB::GUI {

RestoreDiskConfigModel::RestoreDiskConfigModel(
    const QSharedPointer<NVB::Info::DiskImageRestoreConfiguration>& configuration, QObject* parent)
    : QAbstractItemModel(parent)
    , m_configuration(configuration)
    , m_disks(configuration ? configuration->disks()
                            : QList<QSharedPointer<NVB::Info::DiskImageRestoreConfiguration::Disk>>())
{ }

QModelIndex RestoreDiskConfigModel::index(int row, int column, const QModelIndex& parent) const
{
    if (!hasIndex(row, column, parent))
        return {};
    return createIndex(row, column, parent.isValid() ? quintptr(parent.row() + 1) : quintptr(0));
}

QModelIndex RestoreDiskConfigModel::parent(const QModelIndex& index) const
{
    if (!index.isValid() || index.internalId() == 0)
        return {};
    return createIndex(int(index.internalId()) - 1, 0, quintptr(0));
}

int RestoreDiskConfigModel::rowCount(const QModelIndex& parent) const
{
    if (!parent.isValid())
        return m_disks.size();
    if (parent.internalId() != 0 || parent.column() != 0 || parent.row() >= m_disks.size())
        return 0;
    return m_disks.at(parent.row())->volumes().size();
}

int RestoreDiskConfigModel::columnCount(const QModelIndex&) const
{
    return ColumnCount;
}

QVariant RestoreDiskConfigModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::TextAlignmentRole))
        return {};
    if (role == Qt::TextAlignmentRole)
        return index.column() == Size ? QVariant(int(Qt::AlignRight | Qt::AlignVCenter)) : QVariant();
    const QLocale locale;
    if (index.internalId() == 0) {
        if (index.row() >= m_disks.size())
            return {};
        const auto& disk = m_disks.at(index.row());
        switch (index.column()) {
        case Name:
            return tr("Disk #%1").arg(index.row() + 1);
        case Size:
            return locale.formattedDataSize(disk->capacity());
        case Boot:
            return disk->bootLoader() == NVB::Info::DiskImageRestoreConfiguration::Disk::Uefi ? QStringLiteral("UEFI")
                : disk->bootLoader() == NVB::Info::DiskImageRestoreConfiguration::Disk::Bios  ? QStringLiteral("BIOS")
                                                                                              : QString();
        default:
            return {};
        }
    }
    const int diskRow = int(index.internalId()) - 1;
    if (diskRow >= m_disks.size())
        return {};
    const auto volumes = m_disks.at(diskRow)->volumes();
    if (index.row() >= volumes.size())
        return {};
    const auto& volume = volumes.at(index.row());
    switch (index.column()) {
    case Name:
        return tr("Volume %1").arg(index.row() + 1);
    case Size:
        return locale.formattedDataSize(volume->length());
    case FileSystem:
        return volume->fileSystem();
    case Boot:
        return volume->isBoot() ? tr("Boot") : QString();
    default:
        return {};
    }
}

QVariant RestoreDiskConfigModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case Name:
        return tr("Name");
    case Size:
        return tr("Size");
    case FileSystem:
        return tr("File system");
    case Boot:
        return tr("Boot");
    default:
        return {};
    }
}

} // namespace NVB::GUI
