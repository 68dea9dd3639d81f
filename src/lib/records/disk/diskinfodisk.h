#pragma once

#include <QDomElement>
#include <QList>
#include <QString>
#include <QUuid>

#include "records/disk/diskinfovolume.h"

namespace NVB::Info {

// One disk of a machine or image, reached as DiskInfo::Disk.
class DiskInfoDisk
{
public:
    enum PatritionTableType { None = 0, Mbr = 1, Gpt = 2 };

    QUuid diskId() const { return m_diskId; }
    void setDiskId(const QUuid& id) { m_diskId = id; }
    QString deviceName() const { return m_deviceName; }
    void setDeviceName(const QString& name) { m_deviceName = name; }
    QString model() const { return m_model; }
    void setModel(const QString& model) { m_model = model; }
    qint64 capacity() const { return m_capacity; }
    void setCapacity(qint64 capacity) { m_capacity = capacity; }
    PatritionTableType partitionTableType() const { return m_partitionTableType; }
    void setPartitionTableType(PatritionTableType type) { m_partitionTableType = type; }
    bool isEnabled() const { return m_enabled; }
    void setEnabled(bool enabled) { m_enabled = enabled; }
    const QList<DiskInfoVolume>& volumes() const { return m_volumes; }
    QList<DiskInfoVolume>& volumes() { return m_volumes; }

    bool operator==(const DiskInfoDisk& other) const;
    bool operator!=(const DiskInfoDisk& other) const { return !(*this == other); }

    void writeXml(QDomElement& parent) const;
    // Throws a QString naming the faulty element.
    static DiskInfoDisk readXml(const QDomElement& element);

private:
    QUuid m_diskId;
    QString m_deviceName;
    QString m_model;
    qint64 m_capacity = 0;
    PatritionTableType m_partitionTableType = None;
    bool m_enabled = false;
    QList<DiskInfoVolume> m_volumes;
};

} // namespace NVB::Info
