#pragma once

#include <QDomElement>
#include <QList>
#include <QUuid>

#include "records/disk/restorediskconfigurationvolume.h"

namespace NVB::Info {

// Where one disk of an image goes; reached as RestoreDiskConfiguration::Disk.
class RestoreDiskConfigurationDisk
{
public:
    RestoreDiskConfigurationDisk() = default;
    explicit RestoreDiskConfigurationDisk(const QUuid& sourceDiskId);

    QUuid sourceDiskId() const { return m_sourceDiskId; }
    QUuid destinationDiskId() const { return m_destinationDiskId; }
    void setDestinationDiskId(const QUuid& id) { m_destinationDiskId = id; }
    bool isVolumeEnabled() const;
    const QList<RestoreDiskConfigurationVolume>& volumes() const { return m_volumes; }
    QList<RestoreDiskConfigurationVolume>& volumes() { return m_volumes; }

    bool operator==(const RestoreDiskConfigurationDisk& other) const;
    bool operator!=(const RestoreDiskConfigurationDisk& other) const { return !(*this == other); }

    void writeXml(QDomElement& parent) const;
    // Throws a QString naming the faulty element.
    static RestoreDiskConfigurationDisk readXml(const QDomElement& element);

private:
    QUuid m_sourceDiskId;
    QUuid m_destinationDiskId;
    QList<RestoreDiskConfigurationVolume> m_volumes;
};

} // namespace NVB::Info
