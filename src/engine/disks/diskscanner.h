#pragma once

#include <QSharedPointer>
#include <QString>

#include "records/disk/diskinfo.h"

namespace NVB::Engine {

// The machine's disks as they are now: block devices from sysfs, file
// systems, labels and partition tables from libblkid, mount points from
// libmount, used space from the mounted file systems.
class DiskScanner
{
public:
    // `sysRoot` and `mountInfo` are for tests; by default the real machine.
    explicit DiskScanner(const QString& sysRoot = QStringLiteral("/sys"),
        const QString& mountInfo = QStringLiteral("/proc/self/mountinfo"));

    QSharedPointer<NVB::Info::DiskInfo> scan() const;

    // Stable ids: the same disk or volume gets the same id on every scan.
    static QUuid diskIdFor(const QString& deviceName);
    static QUuid volumeIdFor(const QString& deviceName);

private:
    QString m_sysRoot;
    QString m_mountInfo;
};

} // namespace NVB::Engine
