#pragma once

#include <QSharedPointer>

#include "records/disk/diskinfo.h"
#include "records/plan/backup.h"

namespace NVB::Info::Plan {

// A disk image backup plan.
class BackupDiskImage : public Backup
{
public:
    enum BackupVolumesType { SystemRequired = 1, AllDrives = 2, SelectedPartitions = 3 };

    BackupDiskImage();

    BackupVolumesType backupVolumesType() const { return m_backupVolumesType; }
    void setBackupVolumesType(BackupVolumesType type) { m_backupVolumesType = type; }
    // Null until disks were chosen.
    QSharedPointer<NVB::Info::DiskInfo> diskInfo() const { return m_diskInfo; }
    void setDiskInfo(const QSharedPointer<NVB::Info::DiskInfo>& info) { m_diskInfo = info; }
    bool ignoreBadSectors() const { return m_ignoreBadSectors; }
    void setIgnoreBadSectors(bool ignore) { m_ignoreBadSectors = ignore; }
    unsigned long long prefetchBlockCount() const { return m_prefetchBlockCount; }
    void setPrefetchBlockCount(unsigned long long count) { m_prefetchBlockCount = count; }

    QString rootElement() const override;
    void readFields(const QDomElement& root) override;

protected:
    void writeFields(QDomElement& root) const override;

private:
    BackupVolumesType m_backupVolumesType = AllDrives;
    QSharedPointer<NVB::Info::DiskInfo> m_diskInfo;
    bool m_ignoreBadSectors = false;
    unsigned long long m_prefetchBlockCount = 0;
};

} // namespace NVB::Info::Plan
