#pragma once

#include <QList>
#include <QString>

#include "activerun.h"
#include "records/disk/diskinfovolume.h"

namespace NVB::Info::Plan {
class BackupDiskImage;
class RestoreDiskImage;
} // namespace NVB::Info::Plan

namespace NVB::Engine {

class EngineStore;

// The work of disk image plans: each chosen volume becomes one image file in
// the run's folder on a File System account, and comes back onto a chosen
// unmounted volume or disk.
class DiskImageRun
{
public:
    static QString prepareBackup(EngineStore* store, ActiveRun& active, const NVB::Info::Plan::BackupDiskImage& plan,
        const ProgressSink& report, RunWork* work);
    static QString prepareRestore(EngineStore* store, ActiveRun& active, const NVB::Info::Plan::RestoreDiskImage& plan,
        const ProgressSink& report, RunWork* work);
    // The volumes a plan takes, as its volume choice says.
    static QList<NVB::Info::DiskInfoVolume> chosenVolumes(const NVB::Info::Plan::BackupDiskImage& plan);
    // The image file of a volume, in its run's folder.
    static QString imageName(const QUuid& volumeId);
};

} // namespace NVB::Engine
