#pragma once

#include <QDomDocument>
#include <QList>
#include <QSharedPointer>
#include <QString>

#include "records/disk/diskinfo.h"
#include "records/disk/restorediskconfigurationdisk.h"
#include "records/disk/restorediskconfigurationvolume.h"

namespace NVB::Info {

// The choice of what of an image is restored and where, volume by volume.
class RestoreDiskConfiguration
{
public:
    using Disk = RestoreDiskConfigurationDisk;
    using Volume = RestoreDiskConfigurationVolume;

    // Every disk and volume of the image, with the volumes that the image
    // marks as taken chosen for restore and no destination yet.
    static QSharedPointer<RestoreDiskConfiguration> createFromDiskInfo(const QSharedPointer<DiskInfo>& info);
    static QSharedPointer<RestoreDiskConfiguration> createFromXml(const QString& xml);
    // Throws a QString naming the faulty element.
    static QSharedPointer<RestoreDiskConfiguration> readElement(const QDomElement& root);

    QString toXml() const;
    QDomElement toElement(QDomDocument& document) const;

    const QList<Disk>& disks() const { return m_disks; }
    QList<Disk>& disks() { return m_disks; }

    // Copies a stored choice onto the disks and volumes that match by source id.
    void setOptions(const QSharedPointer<RestoreDiskConfiguration>& other);

    bool operator==(const RestoreDiskConfiguration& other) const { return m_disks == other.m_disks; }
    bool operator!=(const RestoreDiskConfiguration& other) const { return m_disks != other.m_disks; }

private:
    QList<Disk> m_disks;
};

} // namespace NVB::Info
