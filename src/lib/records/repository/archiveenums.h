#pragma once

#include <QMap>
#include <QString>

namespace NVL::Archive {

// The kind of a bunch. Other values exist in storage and show as an archive of
// unknown kind.
enum Type : int { FileLevel = 0, DiskImage = 2, HyperV = 5, VMwareEsx = 6 };

enum BackupType : int { Full = 0, SyntheticFull = 1, Incremental = 2, UnknownBackupType = 1000 };

// The gaps are the engine's; anything but NotBroken closes a generation.
enum BrokenType : int { NotBroken = 0, ToPurge = 3, ToPurgeAfterSync = 10, ToPurgeRemoved = 11 };

// What this machine holds of the content of a generation or restore point.
enum DeepSyncType : int { DeepSyncNone = 0, DeepSyncNeeded = 1, DeepSyncRunning = 2, DeepSyncDone = 3 };

// Shown as they stand, untranslated; other values have no entry.
extern const QMap<int, QString> BackupTypeToString;
extern const QMap<int, QString> BrokenTypeToString;

// Image resources of a bunch by its Type and of a restore point by its
// BackupType; unknown values get the image of the unknown kind.
QString TypeImage(int type);
QString BackupTypeImage(int backupType);

} // namespace NVL::Archive
