#pragma once

#include <QString>
#include <QUuid>

#include "activerun.h"
#include "filebackupjob.h"
#include "fileselection.h"

namespace NVB::Info::Plan {
class RestoreFile;
}

namespace NVB::Engine {

// The work of file plans whose data is in the new format's repository.
class ArchiveRun
{
public:
    // `parameters` as the legacy format would take them: the new format
    // reads the same options from them.
    static RunWork backup(const ActiveRun& active, const FileBackupJob::Parameters& parameters, FileSelection selection,
        const QString& prefix, qint64 previousSequence, bool useConsistencyCheck, const QString& storeFile,
        const ProgressSink& report, const QString& password, int keyBytes);
    static RunWork restore(const ActiveRun& active, const NVB::Info::Plan::RestoreFile& plan, const QString& folder,
        const QString& prefix, const StoredRestorePoint& point, const ProgressSink& report);
    static RunWork verify(const ActiveRun& active, const QString& folder, const QString& prefix,
        const StoredRestorePoint& point, const ProgressSink& report);
};

} // namespace NVB::Engine
