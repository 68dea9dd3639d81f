#pragma once

#include <QDomDocument>
#include <QList>
#include <QSharedPointer>
#include <QString>
#include <QUuid>

#include "records/disk/diskinfodisk.h"
#include "records/disk/diskinfovolume.h"

namespace NVB::Info {

// The disks of one machine or image, with the marks of what a backup takes.
class DiskInfo
{
public:
    using Disk = DiskInfoDisk;
    using Volume = DiskInfoVolume;

    static QSharedPointer<DiskInfo> createFromXml(const QString& xml);
    // Throws a QString naming the faulty element; used where a disk document
    // is embedded in another one.
    static QSharedPointer<DiskInfo> readElement(const QDomElement& root);

    QString toXml() const;
    QDomElement toElement(QDomDocument& document) const;

    const QList<Disk>& disks() const { return m_disks; }
    QList<Disk>& disks() { return m_disks; }
    // An empty disk when no disk has that id.
    Disk diskById(const QUuid& id) const;
    Volume volume(const QUuid& diskId, const QUuid& volumeId) const;

    void setOptions(const QSharedPointer<DiskInfo>& other);
    void selectAllDrives();
    void selectSystemRequired();
    bool isAllDrivesSelected() const;

    bool operator==(const DiskInfo& other) const { return m_disks == other.m_disks; }
    bool operator!=(const DiskInfo& other) const { return m_disks != other.m_disks; }

private:
    QList<Disk> m_disks;
};

} // namespace NVB::Info
