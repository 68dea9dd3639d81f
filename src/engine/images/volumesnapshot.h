#pragma once

#include <QString>

namespace NVB::Engine {

// What the machine offers to freeze a volume while it is imaged. Only LVM
// logical volumes can have a snapshot here; no driver is installed for
// anything else, and the answer says so.
class VolumeSnapshot
{
public:
    struct Answer
    {
        bool available = false;
        QString type; // "lvm" when available
        QString message; // why not, in the user's words
    };

    // `device` as "/dev/NAME"; `sysRoot` for tests.
    static Answer forDevice(const QString& device, const QString& sysRoot = QStringLiteral("/sys"));
    // The mount points of a device, from the mount table; empty when it is
    // not mounted. `readOnly` tells whether every mount of it is read-only.
    static QStringList mountPoints(const QString& device, bool* readOnly = nullptr,
        const QString& mountInfo = QStringLiteral("/proc/self/mountinfo"));
};

} // namespace NVB::Engine
