#include "restorediskconfigurationvolume.h"

#include <limits>

#include "records/recordxml.h"

namespace NVB::Info {

RestoreDiskConfigurationVolume::RestoreDiskConfigurationVolume(
    const QUuid& sourceDiskId, const QUuid& sourceIdentity, qint64 length)
    : m_sourceDiskId(sourceDiskId)
    , m_sourceIdentity(sourceIdentity)
    , m_length(length)
{ }

bool RestoreDiskConfigurationVolume::operator==(const RestoreDiskConfigurationVolume& other) const
{
    return m_sourceDiskId == other.m_sourceDiskId && m_sourceIdentity == other.m_sourceIdentity
        && m_destinationDiskId == other.m_destinationDiskId && m_destinationIdentity == other.m_destinationIdentity
        && m_sourceEnabled == other.m_sourceEnabled && m_destinationEnabled == other.m_destinationEnabled
        && m_length == other.m_length;
}

void RestoreDiskConfigurationVolume::writeXml(QDomElement& parent) const
{
    QDomElement e = RecordXml::addElement(parent, QStringLiteral("Volume"));
    RecordXml::addUuid(e, QStringLiteral("SourceDiskId"), m_sourceDiskId);
    RecordXml::addUuid(e, QStringLiteral("SourceId"), m_sourceIdentity);
    RecordXml::addUuid(e, QStringLiteral("DestinationDiskId"), m_destinationDiskId);
    RecordXml::addUuid(e, QStringLiteral("DestinationId"), m_destinationIdentity);
    RecordXml::addBool(e, QStringLiteral("SourceEnabled"), m_sourceEnabled);
    RecordXml::addBool(e, QStringLiteral("DestinationEnabled"), m_destinationEnabled);
    RecordXml::addInt(e, QStringLiteral("Length"), m_length);
}

RestoreDiskConfigurationVolume RestoreDiskConfigurationVolume::readXml(const QDomElement& e)
{
    RestoreDiskConfigurationVolume volume(RecordXml::toRequiredUuid(e, QStringLiteral("SourceDiskId")),
        RecordXml::toRequiredUuid(e, QStringLiteral("SourceId")),
        RecordXml::toInt(e, QStringLiteral("Length"), 0, std::numeric_limits<qint64>::max()));
    volume.m_destinationDiskId = RecordXml::toUuid(e, QStringLiteral("DestinationDiskId"));
    volume.m_destinationIdentity = RecordXml::toUuid(e, QStringLiteral("DestinationId"));
    volume.m_sourceEnabled = RecordXml::toBool(e, QStringLiteral("SourceEnabled"));
    volume.m_destinationEnabled = RecordXml::toBool(e, QStringLiteral("DestinationEnabled"));
    return volume;
}

} // namespace NVB::Info
