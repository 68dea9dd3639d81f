#pragma once

#include <QSharedPointer>

#include "records/disk/diskimagerestoreconfiguration.h"
#include "records/disk/diskinfo.h"
#include "records/disk/restorediskconfiguration.h"
#include "records/plan/diskimagefileformat.h"
#include "records/plan/restore.h"

namespace NVB::Info::Plan {

// A disk image restore plan.
class RestoreDiskImage : public Restore
{
public:
    using DiskImageFileFormat = NVB::Info::Plan::DiskImageFileFormat;
    enum DiskImageRestoreType { PhysicalDisk = 0, VirtualDisk = 1, VirtualMachine = 2 };

    RestoreDiskImage();

    QString destination() const { return m_destination; }
    void setDestination(const QString& destination) { m_destination = destination; }
    QSharedPointer<NVB::Info::DiskInfo> diskInfo() const { return m_diskInfo; }
    void setDiskInfo(const QSharedPointer<NVB::Info::DiskInfo>& info) { m_diskInfo = info; }
    DiskImageFileFormat& diskImageFileFormat() { return m_diskImageFileFormat; }
    const DiskImageFileFormat& diskImageFileFormat() const { return m_diskImageFileFormat; }
    DiskImageRestoreType diskImageRestoreType() const { return m_diskImageRestoreType; }
    void setDiskImageRestoreType(DiskImageRestoreType type) { m_diskImageRestoreType = type; }
    QSharedPointer<NVB::Info::RestoreDiskConfiguration> restoreDiskConfiguration() const
    {
        return m_restoreDiskConfiguration;
    }
    void setRestoreDiskConfiguration(const QSharedPointer<NVB::Info::RestoreDiskConfiguration>& configuration)
    {
        m_restoreDiskConfiguration = configuration;
    }
    QSharedPointer<NVB::Info::DiskImageRestoreConfiguration> diskImageRestoreConfiguration() const
    {
        return m_diskImageRestoreConfiguration;
    }
    void setDiskImageRestoreConfiguration(const QSharedPointer<NVB::Info::DiskImageRestoreConfiguration>& configuration)
    {
        m_diskImageRestoreConfiguration = configuration;
    }

    QString rootElement() const override;
    void readFields(const QDomElement& root) override;

protected:
    void writeFields(QDomElement& root) const override;

private:
    QString m_destination;
    QSharedPointer<NVB::Info::DiskInfo> m_diskInfo;
    DiskImageFileFormat m_diskImageFileFormat;
    DiskImageRestoreType m_diskImageRestoreType = PhysicalDisk;
    QSharedPointer<NVB::Info::RestoreDiskConfiguration> m_restoreDiskConfiguration;
    QSharedPointer<NVB::Info::DiskImageRestoreConfiguration> m_diskImageRestoreConfiguration;
};

} // namespace NVB::Info::Plan
