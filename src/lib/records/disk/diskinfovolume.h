#pragma once

#include <QDomElement>
#include <QString>
#include <QStringList>
#include <QUuid>

namespace NVB::Info {

// One volume of a disk, reached as DiskInfo::Volume.
class DiskInfoVolume
{
public:
    QUuid identity() const { return m_identity; }
    void setIdentity(const QUuid& id) { m_identity = id; }
    QUuid diskId() const { return m_diskId; }
    void setDiskId(const QUuid& id) { m_diskId = id; }
    QString deviceName() const { return m_deviceName; }
    void setDeviceName(const QString& name) { m_deviceName = name; }
    QString label() const { return m_label; }
    void setLabel(const QString& label) { m_label = label; }
    QString fileSystemType() const { return m_fileSystemType; }
    void setFileSystemType(const QString& type) { m_fileSystemType = type; }
    QUuid type() const { return m_type; }
    void setType(const QUuid& type) { m_type = type; }
    unsigned char biosType() const { return m_biosType; }
    void setBiosType(unsigned char type) { m_biosType = type; }
    bool biosIsActive() const { return m_biosIsActive; }
    void setBiosIsActive(bool active) { m_biosIsActive = active; }
    bool isBoot() const { return m_isBoot; }
    void setIsBoot(bool boot) { m_isBoot = boot; }
    qint64 length() const { return m_length; }
    void setLength(qint64 length) { m_length = length; }
    qint64 usedSpace() const { return m_usedSpace; }
    void setUsedSpace(qint64 used) { m_usedSpace = used; }
    qint64 extentStartOffset() const { return m_extentStartOffset; }
    void setExtentStartOffset(qint64 offset) { m_extentStartOffset = offset; }
    QStringList mountPoints() const { return m_mountPoints; }
    void setMountPoints(const QStringList& points) { m_mountPoints = points; }
    bool requiredBySystem() const { return m_requiredBySystem; }
    void setRequiredBySystem(bool required) { m_requiredBySystem = required; }
    bool isEnabled() const { return m_enabled; }
    void setEnabled(bool enabled) { m_enabled = enabled; }

    bool operator==(const DiskInfoVolume& other) const;
    bool operator!=(const DiskInfoVolume& other) const { return !(*this == other); }

    void writeXml(QDomElement& parent) const;
    // Throws a QString naming the faulty element.
    static DiskInfoVolume readXml(const QDomElement& element);

private:
    QUuid m_identity;
    QUuid m_diskId;
    QString m_deviceName;
    QString m_label;
    QString m_fileSystemType;
    QUuid m_type;
    unsigned char m_biosType = 0;
    bool m_biosIsActive = false;
    bool m_isBoot = false;
    qint64 m_length = 0;
    qint64 m_usedSpace = 0;
    qint64 m_extentStartOffset = 0;
    QStringList m_mountPoints;
    bool m_requiredBySystem = false;
    bool m_enabled = false;
};

} // namespace NVB::Info
