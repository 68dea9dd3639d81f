#pragma once

#include <QDateTime>
#include <QDomDocument>
#include <QSharedPointer>
#include <QString>

#include "records/disk/diskinfo.h"

namespace NVB::Info {

// What a disk image in storage says about itself: the machine it was made of.
class DiskImageMetaData
{
public:
    static QSharedPointer<DiskImageMetaData> createFromXml(const QString& xml);

    QString toXml() const;

    QString computerName() const { return m_computerName; }
    void setComputerName(const QString& name) { m_computerName = name; }
    QDateTime backupDate() const { return m_backupDate; }
    void setBackupDate(const QDateTime& date) { m_backupDate = date; }
    // Null when the image carries no disk description.
    QSharedPointer<DiskInfo> diskInfo() const { return m_diskInfo; }
    void setDiskInfo(const QSharedPointer<DiskInfo>& info) { m_diskInfo = info; }

private:
    QString m_computerName;
    QDateTime m_backupDate;
    QSharedPointer<DiskInfo> m_diskInfo;
};

} // namespace NVB::Info
