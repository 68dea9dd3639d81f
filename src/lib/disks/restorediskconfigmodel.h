#pragma once

#include <QAbstractItemModel>
#include <QSharedPointer>

#include "records/disk/diskimagerestoreconfiguration.h"

namespace NVB::GUI {

// A read-only tree of a disk layout for a restore: each destination disk
// with the volumes it will get. A volume's internal id is its disk's row
// plus 1, as in DiskInfoModel.
class RestoreDiskConfigModel : public QAbstractItemModel
{
    Q_OBJECT
public:
    enum Column { Name = 0, Size, FileSystem, Boot, ColumnCount };

    explicit RestoreDiskConfigModel(
        const QSharedPointer<NVB::Info::DiskImageRestoreConfiguration>& configuration, QObject* parent = nullptr);

    QSharedPointer<NVB::Info::DiskImageRestoreConfiguration> diskConfiguration() const { return m_configuration; }

    QModelIndex index(int row, int column, const QModelIndex& parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    QSharedPointer<NVB::Info::DiskImageRestoreConfiguration> m_configuration;
    // Taken once: the record hands out copies of its lists.
    QList<QSharedPointer<NVB::Info::DiskImageRestoreConfiguration::Disk>> m_disks;
};

} // namespace NVB::GUI
