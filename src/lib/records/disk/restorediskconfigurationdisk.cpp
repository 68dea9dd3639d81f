#include "restorediskconfigurationdisk.h"

#include "records/recordxml.h"

namespace NVB::Info {

RestoreDiskConfigurationDisk::RestoreDiskConfigurationDisk(const QUuid& sourceDiskId)
    : m_sourceDiskId(sourceDiskId)
{ }

bool RestoreDiskConfigurationDisk::isVolumeEnabled() const
{
    for (const RestoreDiskConfigurationVolume& volume : m_volumes) {
        if (volume.isSourceEnabled())
            return true;
    }
    return false;
}

bool RestoreDiskConfigurationDisk::operator==(const RestoreDiskConfigurationDisk& other) const
{
    return m_sourceDiskId == other.m_sourceDiskId && m_destinationDiskId == other.m_destinationDiskId
        && m_volumes == other.m_volumes;
}

void RestoreDiskConfigurationDisk::writeXml(QDomElement& parent) const
{
    QDomElement e = RecordXml::addElement(parent, QStringLiteral("Disk"));
    RecordXml::addUuid(e, QStringLiteral("SourceDiskId"), m_sourceDiskId);
    RecordXml::addUuid(e, QStringLiteral("DestinationDiskId"), m_destinationDiskId);
    QDomElement volumes = RecordXml::addElement(e, QStringLiteral("Volumes"));
    for (const RestoreDiskConfigurationVolume& volume : m_volumes)
        volume.writeXml(volumes);
}

RestoreDiskConfigurationDisk RestoreDiskConfigurationDisk::readXml(const QDomElement& e)
{
    RestoreDiskConfigurationDisk disk(RecordXml::toRequiredUuid(e, QStringLiteral("SourceDiskId")));
    disk.m_destinationDiskId = RecordXml::toUuid(e, QStringLiteral("DestinationDiskId"));
    const QDomElement volumes = RecordXml::element(e, QStringLiteral("Volumes"));
    for (QDomElement v = volumes.firstChildElement(QStringLiteral("Volume")); !v.isNull();
         v = v.nextSiblingElement(QStringLiteral("Volume"))) {
        RestoreDiskConfigurationVolume volume = RestoreDiskConfigurationVolume::readXml(v);
        if (volume.sourceDiskId() != disk.m_sourceDiskId)
            throw QStringLiteral("Element <%1> names another disk").arg(RecordXml::path(v));
        disk.m_volumes.append(volume);
    }
    return disk;
}

} // namespace NVB::Info
