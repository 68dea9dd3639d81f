#pragma once

#include <QDomElement>
#include <QList>
#include <QSharedPointer>
#include <QUuid>

#include "records/disk/diskimagerestoreconfigurationvolume.h"
#include "records/disk/diskinfodisk.h"

namespace NVB::Info {

// One disk of a new disk layout; reached as DiskImageRestoreConfiguration::Disk.
class DiskImageRestoreConfigurationDisk
{
public:
    enum BootLoader { None = 0, Bios = 1, Uefi = 2 };
    using Volume = DiskImageRestoreConfigurationVolume;

    QUuid id() const { return m_id; }
    void setId(const QUuid& id) { m_id = id; }
    QUuid sourceId() const { return m_sourceId; }
    void setSourceId(const QUuid& id) { m_sourceId = id; }
    qint64 capacity() const { return m_capacity; }
    void setCapacity(qint64 capacity) { m_capacity = capacity; }
    DiskInfoDisk::PatritionTableType partitionTableType() const { return m_partitionTableType; }
    void setPartitionTableType(DiskInfoDisk::PatritionTableType type) { m_partitionTableType = type; }
    BootLoader bootLoader() const { return m_bootLoader; }
    void setBootLoader(BootLoader loader) { m_bootLoader = loader; }
    QList<QSharedPointer<Volume>> volumes() const { return m_volumes; }
    void addVolume(const QSharedPointer<Volume>& volume);

    bool operator==(const DiskImageRestoreConfigurationDisk& other) const;
    bool operator!=(const DiskImageRestoreConfigurationDisk& other) const { return !(*this == other); }

    void writeXml(QDomElement& parent) const;
    // Throws a QString naming the faulty element.
    static QSharedPointer<DiskImageRestoreConfigurationDisk> readXml(const QDomElement& element);

private:
    QUuid m_id;
    QUuid m_sourceId;
    qint64 m_capacity = 0;
    DiskInfoDisk::PatritionTableType m_partitionTableType = DiskInfoDisk::None;
    BootLoader m_bootLoader = None;
    QList<QSharedPointer<Volume>> m_volumes;
};

} // namespace NVB::Info
