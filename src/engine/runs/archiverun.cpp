#include "archiverun.h"

#include <optional>

#include <QDir>

#include "archive/archivebackupjob.h"
#include "archive/archiveconsistencycheck.h"
#include "archive/archiverestorejob.h"
#include "records/plan/backup.h"
#include "records/plan/factory.h"
#include "records/plan/restorefile.h"
#include "runpreparation.h"
#include "store/contentstaging.h"
#include "store/storedatabase.h"

namespace NVB::Engine {

namespace {

RunWork restoreJob(ArchiveRestoreJob::Parameters parameters, const ProgressSink& report)
{
    return [report, parameters = std::move(parameters)](const std::atomic_bool& stop) {
        ArchiveRestoreJob job(parameters);
        return RunPreparation::outcomeOf(job.run(stop, report));
    };
}

} // namespace

RunWork ArchiveRun::backup(const ActiveRun& active, const FileBackupJob::Parameters& parameters,
    FileSelection selection, const QString& prefix, qint64 previousSequence, bool useConsistencyCheck,
    const QString& storeFile, const ProgressSink& report, const QString& password, int keyBytes)
{
    const QUuid planId = active.plan.id;
    const StoredRestorePoint& point = active.point;
    ArchiveBackupJob::Parameters archive;
    archive.planId = planId;
    archive.planName = parameters.planName;
    archive.storageRoot = parameters.storageRoot;
    archive.repositoryRoot = RunPreparation::archiveRoot(prefix, planId);
    archive.generation = point.generationId;
    archive.sequence = point.sequenceNumber;
    archive.newGeneration = active.newGeneration;
    archive.previousSequence = previousSequence;
    archive.startUtc = point.startUtc;
    archive.reBackupModifiedSince = parameters.reBackupModifiedSince;
    archive.backupEmptyFolders = parameters.backupEmptyFolders;
    archive.compress = parameters.compress;
    archive.password = password;
    archive.keyBytes = keyBytes;
    archive.followFileSymlinks = parameters.followFileSymlinks;
    archive.skipSymlinks = parameters.skipSymlinks;
    archive.neverTaken = parameters.neverTaken;
    archive.oneFileSystem = parameters.oneFileSystem;
    archive.expectedTotals = parameters.expectedTotals;
    archive.storeFile = storeFile;
    RunWork work = [report, archive = std::move(archive), selection = std::move(selection), runId = active.run.id](
                       const std::atomic_bool& stop) {
        // New and changed entries go to the store while the run walks, so a
        // first run does not hold its whole tree until the end.
        StoreDatabase database;
        std::optional<ContentStaging> staging;
        ArchiveBackupJob::Parameters parameters = archive;
        if (database.open(parameters.storeFile)) {
            staging.emplace(database, runId);
            parameters.stageContent = [&staging](const QList<StoredContent>& batch) { return staging->add(batch); };
        }
        ArchiveBackupJob job(parameters, selection);
        auto result = job.run(stop, report);
        RunOutcome outcome = RunPreparation::outcomeOf(result);
        outcome.changes
            = ContentChanges {std::move(result.content), std::move(result.removed), QStringList(), result.replacesAll};
        outcome.changes->stagedRun = staging && staging->count() > 0 ? runId : 0;
        outcome.bytesRead = result.bytesRead;
        outcome.bytesNew = result.bytesNew;
        outcome.bytesStored = result.bytesStored;
        return outcome;
    };
    return ArchiveConsistencyCheck::around(parameters.storageRoot, RunPreparation::archiveRoot(prefix, planId),
        point.generationId, useConsistencyCheck, std::move(work), password);
}

RunWork ArchiveRun::restore(const ActiveRun& active, const NVB::Info::Plan::RestoreFile& plan, const QString& folder,
    const QString& prefix, const StoredRestorePoint& point, const ProgressSink& report)
{
    ArchiveRestoreJob::Parameters parameters;
    parameters.planId = active.plan.id;
    parameters.planName = active.plan.name;
    parameters.storageRoot = QDir::cleanPath(folder);
    parameters.repositoryRoot = RunPreparation::archiveRoot(prefix, point.bunchId);
    parameters.generation = point.generationId;
    parameters.sequence = point.sequenceNumber;
    parameters.items = plan.restoreItems();
    parameters.destination = plan.restoreToOriginalLocation() ? QString() : plan.destination();
    parameters.skipExistingFiles = plan.skipExistingFiles();
    parameters.onlyNewFiles = plan.onlyNewFiles();
    parameters.password = plan.encryptionPassword();
    return restoreJob(std::move(parameters), report);
}

RunWork ArchiveRun::verify(const ActiveRun& active, const QString& folder, const QString& prefix,
    const StoredRestorePoint& point, const ProgressSink& report)
{
    ArchiveRestoreJob::Parameters parameters;
    parameters.planId = active.plan.id;
    parameters.planName = active.plan.name;
    parameters.storageRoot = QDir::cleanPath(folder);
    parameters.repositoryRoot = RunPreparation::archiveRoot(prefix, active.plan.id);
    parameters.generation = point.generationId;
    parameters.sequence = point.sequenceNumber;
    parameters.verifyOnly = true;
    if (const auto record = NVB::Info::Plan::Factory::create(active.plan.xml);
        const auto* backup = dynamic_cast<const NVB::Info::Plan::Backup*>(record.data()))
        parameters.password = backup->encryption().password();
    return restoreJob(std::move(parameters), report);
}

} // namespace NVB::Engine
