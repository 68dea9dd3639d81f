#include "diskinfodisk.h"

#include <limits>

#include <QSet>

#include "records/recordxml.h"

namespace NVB::Info {

bool DiskInfoDisk::operator==(const DiskInfoDisk& other) const
{
    return m_diskId == other.m_diskId && m_deviceName == other.m_deviceName && m_model == other.m_model
        && m_capacity == other.m_capacity && m_partitionTableType == other.m_partitionTableType
        && m_enabled == other.m_enabled && m_volumes == other.m_volumes;
}

void DiskInfoDisk::writeXml(QDomElement& parent) const
{
    QDomElement e = RecordXml::addElement(parent, QStringLiteral("Disk"));
    RecordXml::addUuid(e, QStringLiteral("Id"), m_diskId);
    RecordXml::addText(e, QStringLiteral("DeviceName"), m_deviceName);
    RecordXml::addText(e, QStringLiteral("Model"), m_model);
    RecordXml::addInt(e, QStringLiteral("Capacity"), m_capacity);
    RecordXml::addInt(e, QStringLiteral("PartitionTableType"), m_partitionTableType);
    RecordXml::addBool(e, QStringLiteral("Enabled"), m_enabled);
    QDomElement volumes = RecordXml::addElement(e, QStringLiteral("Volumes"));
    for (const DiskInfoVolume& volume : m_volumes)
        volume.writeXml(volumes);
}

DiskInfoDisk DiskInfoDisk::readXml(const QDomElement& e)
{
    DiskInfoDisk disk;
    disk.m_diskId = RecordXml::toRequiredUuid(e, QStringLiteral("Id"));
    disk.m_deviceName = RecordXml::text(e, QStringLiteral("DeviceName"));
    disk.m_model = RecordXml::text(e, QStringLiteral("Model"));
    disk.m_capacity = RecordXml::toInt(e, QStringLiteral("Capacity"), 0, std::numeric_limits<qint64>::max());
    disk.m_partitionTableType
        = PatritionTableType(RecordXml::toEnum(e, QStringLiteral("PartitionTableType"), {None, Mbr, Gpt}));
    disk.m_enabled = RecordXml::toBool(e, QStringLiteral("Enabled"));
    const QDomElement volumes = RecordXml::element(e, QStringLiteral("Volumes"));
    QSet<QUuid> seen;
    for (QDomElement v = volumes.firstChildElement(QStringLiteral("Volume")); !v.isNull();
         v = v.nextSiblingElement(QStringLiteral("Volume"))) {
        DiskInfoVolume volume = DiskInfoVolume::readXml(v);
        if (volume.diskId() != disk.m_diskId)
            throw QStringLiteral("Element <%1> names another disk").arg(RecordXml::path(v));
        if (seen.contains(volume.identity()))
            throw QStringLiteral("Element <%1> repeats a volume id").arg(RecordXml::path(v));
        seen.insert(volume.identity());
        disk.m_volumes.append(volume);
    }
    return disk;
}

} // namespace NVB::Info
