#include "diskinfovolume.h"

#include <limits>

#include "records/recordxml.h"

namespace NVB::Info {

bool DiskInfoVolume::operator==(const DiskInfoVolume& other) const
{
    return m_identity == other.m_identity && m_diskId == other.m_diskId && m_deviceName == other.m_deviceName
        && m_label == other.m_label && m_fileSystemType == other.m_fileSystemType && m_type == other.m_type
        && m_biosType == other.m_biosType && m_biosIsActive == other.m_biosIsActive && m_isBoot == other.m_isBoot
        && m_length == other.m_length && m_usedSpace == other.m_usedSpace
        && m_extentStartOffset == other.m_extentStartOffset && m_mountPoints == other.m_mountPoints
        && m_requiredBySystem == other.m_requiredBySystem && m_enabled == other.m_enabled;
}

void DiskInfoVolume::writeXml(QDomElement& parent) const
{
    QDomElement e = RecordXml::addElement(parent, QStringLiteral("Volume"));
    RecordXml::addUuid(e, QStringLiteral("Id"), m_identity);
    RecordXml::addUuid(e, QStringLiteral("DiskId"), m_diskId);
    RecordXml::addText(e, QStringLiteral("DeviceName"), m_deviceName);
    RecordXml::addText(e, QStringLiteral("Label"), m_label);
    RecordXml::addText(e, QStringLiteral("FileSystemType"), m_fileSystemType);
    RecordXml::addUuid(e, QStringLiteral("Type"), m_type);
    RecordXml::addUInt(e, QStringLiteral("BiosType"), m_biosType);
    RecordXml::addBool(e, QStringLiteral("BiosIsActive"), m_biosIsActive);
    RecordXml::addBool(e, QStringLiteral("IsBoot"), m_isBoot);
    RecordXml::addInt(e, QStringLiteral("Length"), m_length);
    RecordXml::addInt(e, QStringLiteral("UsedSpace"), m_usedSpace);
    RecordXml::addInt(e, QStringLiteral("ExtentStartOffset"), m_extentStartOffset);
    RecordXml::addList(e, QStringLiteral("MountPoints"), m_mountPoints);
    RecordXml::addBool(e, QStringLiteral("RequiredBySystem"), m_requiredBySystem);
    RecordXml::addBool(e, QStringLiteral("Enabled"), m_enabled);
}

DiskInfoVolume DiskInfoVolume::readXml(const QDomElement& e)
{
    constexpr qint64 max = std::numeric_limits<qint64>::max();
    DiskInfoVolume volume;
    volume.m_identity = RecordXml::toRequiredUuid(e, QStringLiteral("Id"));
    volume.m_diskId = RecordXml::toRequiredUuid(e, QStringLiteral("DiskId"));
    volume.m_deviceName = RecordXml::text(e, QStringLiteral("DeviceName"));
    volume.m_label = RecordXml::text(e, QStringLiteral("Label"));
    volume.m_fileSystemType = RecordXml::text(e, QStringLiteral("FileSystemType"));
    volume.m_type = RecordXml::toUuid(e, QStringLiteral("Type"));
    volume.m_biosType = static_cast<unsigned char>(RecordXml::toUInt(e, QStringLiteral("BiosType"), 255));
    volume.m_biosIsActive = RecordXml::toBool(e, QStringLiteral("BiosIsActive"));
    volume.m_isBoot = RecordXml::toBool(e, QStringLiteral("IsBoot"));
    volume.m_length = RecordXml::toInt(e, QStringLiteral("Length"), 0, max);
    // -1: not known, as for a volume that is not mounted.
    volume.m_usedSpace = RecordXml::toInt(e, QStringLiteral("UsedSpace"), -1, max);
    volume.m_extentStartOffset = RecordXml::toInt(e, QStringLiteral("ExtentStartOffset"), 0, max);
    volume.m_mountPoints = RecordXml::toList(e, QStringLiteral("MountPoints"));
    volume.m_requiredBySystem = RecordXml::toBool(e, QStringLiteral("RequiredBySystem"));
    volume.m_enabled = RecordXml::toBool(e, QStringLiteral("Enabled"));
    return volume;
}

} // namespace NVB::Info
