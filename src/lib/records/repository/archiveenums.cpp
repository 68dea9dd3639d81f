#include "archiveenums.h"

namespace NVL::Archive {

const QMap<int, QString> BackupTypeToString {{Full, QStringLiteral("Full")},
    {SyntheticFull, QStringLiteral("SyntheticFull")}, {Incremental, QStringLiteral("Incremental")},
    {UnknownBackupType, QStringLiteral("Unknown")}};

const QMap<int, QString> BrokenTypeToString {{NotBroken, QStringLiteral("NotBroken")},
    {ToPurge, QStringLiteral("ToPurge")}, {ToPurgeAfterSync, QStringLiteral("ToPurgeAfterSync")},
    {ToPurgeRemoved, QStringLiteral("ToPurgeRemoved")}};

QString TypeImage(int type)
{
    switch (type) {
    case FileLevel:
        return QStringLiteral("://images/folder.svg");
    case DiskImage:
        return QStringLiteral("://images/diskimage.svg");
    case HyperV:
        return QStringLiteral("://images/hyper-v.svg");
    case VMwareEsx:
        return QStringLiteral("://images/vmware-esx.svg");
    default:
        return QStringLiteral("://images/archive.svg");
    }
}

QString BackupTypeImage(int backupType)
{
    switch (backupType) {
    case Full:
    case SyntheticFull:
        return QStringLiteral("://images/restore-point-full.svg");
    case Incremental:
        return QStringLiteral("://images/restore-point-diff.svg");
    default:
        return QStringLiteral("://images/restore-point-empty.svg");
    }
}

} // namespace NVL::Archive
