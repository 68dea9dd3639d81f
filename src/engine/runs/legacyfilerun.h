#pragma once

#include <QSet>
#include <QString>
#include <QUuid>

#include "activerun.h"
#include "filebackupjob.h"
#include "fileselection.h"

namespace NVB::Info::Plan {
class BackupFile;
class RestoreFile;
} // namespace NVB::Info::Plan

namespace NVB::Engine {

class EngineStore;

// The work of file plans in the legacy format: one folder of copies per run.
class LegacyFileRun
{
public:
    static RunWork backup(EngineStore* store, const ActiveRun& active, const NVB::Info::Plan::BackupFile& plan,
        const QString& prefix, const QUuid& previousGeneration, FileBackupJob::Parameters parameters,
        FileSelection selection, const ProgressSink& report);
    static RunWork restore(const ActiveRun& active, const NVB::Info::Plan::RestoreFile& plan, const QString& folder,
        const StoredRestorePoint& point, const QString& storeFile, const ProgressSink& report);
    static RunWork verify(const ActiveRun& active, const QString& folder, qint64 pointRow, const QString& storeFile,
        const ProgressSink& report);

private:
    // The work of a job that reads one recorded restore point (a restore or
    // a verify run); the point is loaded on the worker.
    template<typename Job>
    static RunWork pointJob(
        typename Job::Parameters parameters, qint64 row, const QString& storeFile, const ProgressSink& report);
    static void sweepRunFolders(const QString& planFolder, const QSet<QString>& kept);
};

} // namespace NVB::Engine
