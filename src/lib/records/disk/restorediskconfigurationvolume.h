#pragma once

#include <QDomElement>
#include <QUuid>

namespace NVB::Info {

// Where one volume of an image goes; reached as RestoreDiskConfiguration::Volume.
class RestoreDiskConfigurationVolume
{
public:
    RestoreDiskConfigurationVolume() = default;
    RestoreDiskConfigurationVolume(const QUuid& sourceDiskId, const QUuid& sourceIdentity, qint64 length);

    QUuid sourceDiskId() const { return m_sourceDiskId; }
    QUuid sourceIdentity() const { return m_sourceIdentity; }
    QUuid destinationDiskId() const { return m_destinationDiskId; }
    void setDestinationDiskId(const QUuid& id) { m_destinationDiskId = id; }
    QUuid destinationIdentity() const { return m_destinationIdentity; }
    void setDestinationIdentity(const QUuid& id) { m_destinationIdentity = id; }
    bool isSourceEnabled() const { return m_sourceEnabled; }
    void setSourceEnabled(bool enabled) { m_sourceEnabled = enabled; }
    bool isDestinationEnabled() const { return m_destinationEnabled; }
    void setDestinationEnable(bool enabled) { m_destinationEnabled = enabled; }
    qint64 length() const { return m_length; }

    bool operator==(const RestoreDiskConfigurationVolume& other) const;
    bool operator!=(const RestoreDiskConfigurationVolume& other) const { return !(*this == other); }

    void writeXml(QDomElement& parent) const;
    // Throws a QString naming the faulty element.
    static RestoreDiskConfigurationVolume readXml(const QDomElement& element);

private:
    QUuid m_sourceDiskId;
    QUuid m_sourceIdentity;
    QUuid m_destinationDiskId;
    QUuid m_destinationIdentity;
    bool m_sourceEnabled = false;
    bool m_destinationEnabled = false;
    qint64 m_length = 0;
};

} // namespace NVB::Info
