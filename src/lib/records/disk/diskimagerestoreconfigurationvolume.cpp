#include "diskimagerestoreconfigurationvolume.h"

#include <limits>

#include "records/recordxml.h"

namespace NVB::Info {

bool DiskImageRestoreConfigurationVolume::operator==(const DiskImageRestoreConfigurationVolume& other) const
{
    return m_id == other.m_id && m_sourceDiskId == other.m_sourceDiskId && m_sourceVolumeId == other.m_sourceVolumeId
        && m_length == other.m_length && m_startOffset == other.m_startOffset && m_isBoot == other.m_isBoot
        && m_biosType == other.m_biosType && m_biosIsActive == other.m_biosIsActive && m_gptType == other.m_gptType
        && m_fileSystem == other.m_fileSystem;
}

void DiskImageRestoreConfigurationVolume::writeXml(QDomElement& parent) const
{
    QDomElement e = RecordXml::addElement(parent, QStringLiteral("Volume"));
    RecordXml::addUuid(e, QStringLiteral("Id"), m_id);
    RecordXml::addUuid(e, QStringLiteral("SourceDiskId"), m_sourceDiskId);
    RecordXml::addUuid(e, QStringLiteral("SourceVolumeId"), m_sourceVolumeId);
    RecordXml::addInt(e, QStringLiteral("Length"), m_length);
    RecordXml::addInt(e, QStringLiteral("StartOffset"), m_startOffset);
    RecordXml::addBool(e, QStringLiteral("IsBoot"), m_isBoot);
    RecordXml::addUInt(e, QStringLiteral("BiosType"), m_biosType);
    RecordXml::addBool(e, QStringLiteral("BiosIsActive"), m_biosIsActive);
    RecordXml::addUuid(e, QStringLiteral("GptType"), m_gptType);
    RecordXml::addText(e, QStringLiteral("FileSystem"), m_fileSystem);
}

DiskImageRestoreConfigurationVolume DiskImageRestoreConfigurationVolume::readXml(const QDomElement& e)
{
    constexpr qint64 max = std::numeric_limits<qint64>::max();
    DiskImageRestoreConfigurationVolume volume;
    volume.m_id = RecordXml::toUuid(e, QStringLiteral("Id"));
    volume.m_sourceDiskId = RecordXml::toRequiredUuid(e, QStringLiteral("SourceDiskId"));
    volume.m_sourceVolumeId = RecordXml::toRequiredUuid(e, QStringLiteral("SourceVolumeId"));
    volume.m_length = RecordXml::toInt(e, QStringLiteral("Length"), 0, max);
    volume.m_startOffset = RecordXml::toInt(e, QStringLiteral("StartOffset"), 0, max);
    volume.m_isBoot = RecordXml::toBool(e, QStringLiteral("IsBoot"));
    volume.m_biosType = static_cast<unsigned char>(RecordXml::toUInt(e, QStringLiteral("BiosType"), 255));
    volume.m_biosIsActive = RecordXml::toBool(e, QStringLiteral("BiosIsActive"));
    volume.m_gptType = RecordXml::toUuid(e, QStringLiteral("GptType"));
    volume.m_fileSystem = RecordXml::text(e, QStringLiteral("FileSystem"));
    return volume;
}

} // namespace NVB::Info
