#pragma once

#include <QDomElement>
#include <QString>
#include <QUuid>

namespace NVB::Info {

// One volume of a new disk layout; reached as DiskImageRestoreConfiguration::Volume.
class DiskImageRestoreConfigurationVolume
{
public:
    QUuid id() const { return m_id; }
    void setId(const QUuid& id) { m_id = id; }
    QUuid sourceDiskId() const { return m_sourceDiskId; }
    void setSourceDiskId(const QUuid& id) { m_sourceDiskId = id; }
    QUuid sourceVolumeId() const { return m_sourceVolumeId; }
    void setSourceVolumeId(const QUuid& id) { m_sourceVolumeId = id; }
    qint64 length() const { return m_length; }
    void setLength(qint64 length) { m_length = length; }
    qint64 startOffset() const { return m_startOffset; }
    void setStartOffset(qint64 offset) { m_startOffset = offset; }
    bool isBoot() const { return m_isBoot; }
    void setIsBoot(bool boot) { m_isBoot = boot; }
    unsigned char biosType() const { return m_biosType; }
    void setBiosType(unsigned char type) { m_biosType = type; }
    bool biosIsActive() const { return m_biosIsActive; }
    void setBiosIsActive(bool active) { m_biosIsActive = active; }
    QUuid gptType() const { return m_gptType; }
    void setGptType(const QUuid& type) { m_gptType = type; }
    QString fileSystem() const { return m_fileSystem; }
    void setFileSystem(const QString& fileSystem) { m_fileSystem = fileSystem; }

    bool operator==(const DiskImageRestoreConfigurationVolume& other) const;
    bool operator!=(const DiskImageRestoreConfigurationVolume& other) const { return !(*this == other); }

    void writeXml(QDomElement& parent) const;
    // Throws a QString naming the faulty element.
    static DiskImageRestoreConfigurationVolume readXml(const QDomElement& element);

private:
    QUuid m_id;
    QUuid m_sourceDiskId;
    QUuid m_sourceVolumeId;
    qint64 m_length = 0;
    qint64 m_startOffset = 0;
    bool m_isBoot = false;
    unsigned char m_biosType = 0;
    bool m_biosIsActive = false;
    QUuid m_gptType;
    QString m_fileSystem;
};

} // namespace NVB::Info
