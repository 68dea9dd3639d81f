#include "diskimagerestoreconfigurationdisk.h"

#include <limits>

#include "records/recordxml.h"

namespace NVB::Info {

void DiskImageRestoreConfigurationDisk::addVolume(const QSharedPointer<Volume>& volume)
{
    if (volume)
        m_volumes.append(volume);
}

bool DiskImageRestoreConfigurationDisk::operator==(const DiskImageRestoreConfigurationDisk& other) const
{
    if (m_id != other.m_id || m_sourceId != other.m_sourceId || m_capacity != other.m_capacity
        || m_partitionTableType != other.m_partitionTableType || m_bootLoader != other.m_bootLoader
        || m_volumes.size() != other.m_volumes.size())
        return false;
    for (int i = 0; i < m_volumes.size(); ++i) {
        if (*m_volumes.at(i) != *other.m_volumes.at(i))
            return false;
    }
    return true;
}

void DiskImageRestoreConfigurationDisk::writeXml(QDomElement& parent) const
{
    QDomElement e = RecordXml::addElement(parent, QStringLiteral("Disk"));
    RecordXml::addUuid(e, QStringLiteral("Id"), m_id);
    RecordXml::addUuid(e, QStringLiteral("SourceId"), m_sourceId);
    RecordXml::addInt(e, QStringLiteral("Capacity"), m_capacity);
    RecordXml::addInt(e, QStringLiteral("PartitionTableType"), m_partitionTableType);
    RecordXml::addInt(e, QStringLiteral("BootLoader"), m_bootLoader);
    QDomElement volumes = RecordXml::addElement(e, QStringLiteral("Volumes"));
    for (const QSharedPointer<Volume>& volume : m_volumes)
        volume->writeXml(volumes);
}

QSharedPointer<DiskImageRestoreConfigurationDisk> DiskImageRestoreConfigurationDisk::readXml(const QDomElement& e)
{
    auto disk = QSharedPointer<DiskImageRestoreConfigurationDisk>::create();
    disk->m_id = RecordXml::toUuid(e, QStringLiteral("Id"));
    disk->m_sourceId = RecordXml::toRequiredUuid(e, QStringLiteral("SourceId"));
    disk->m_capacity = RecordXml::toInt(e, QStringLiteral("Capacity"), 0, std::numeric_limits<qint64>::max());
    disk->m_partitionTableType = DiskInfoDisk::PatritionTableType(RecordXml::toEnum(
        e, QStringLiteral("PartitionTableType"), {DiskInfoDisk::None, DiskInfoDisk::Mbr, DiskInfoDisk::Gpt}));
    disk->m_bootLoader = BootLoader(RecordXml::toEnum(e, QStringLiteral("BootLoader"), {None, Bios, Uefi}));
    const QDomElement volumes = RecordXml::element(e, QStringLiteral("Volumes"));
    for (QDomElement v = volumes.firstChildElement(QStringLiteral("Volume")); !v.isNull();
         v = v.nextSiblingElement(QStringLiteral("Volume")))
        disk->m_volumes.append(QSharedPointer<Volume>::create(Volume::readXml(v)));
    return disk;
}

} // namespace NVB::Info
