#include "legacyfilerun.h"

#include <unistd.h>

#include <algorithm>

#include <QDir>
#include <QFile>

#include "actions/consistencycheck.h"
#include "blocks/blockstore.h"
#include "blocks/incrementheader.h"
#include "core/bytename.h"
#include "core/nvldebug.h"
#include "encryption/objectkey.h"
#include "encryption/objectopener.h"
#include "filerestorejob.h"
#include "fileverifyjob.h"
#include "records/plan/backupfile.h"
#include "records/plan/factory.h"
#include "records/plan/restorefile.h"
#include "runpreparation.h"
#include "store/contentstaging.h"
#include "store/enginestore.h"
#include "store/repositorystore.h"
#include "store/storedatabase.h"

namespace NVB::Engine {

RunWork LegacyFileRun::backup(EngineStore* store, const ActiveRun& active, const NVB::Info::Plan::BackupFile& plan,
    const QString& prefix, const QUuid& previousGeneration, FileBackupJob::Parameters parameters,
    FileSelection selection, const ProgressSink& report)
{
    const auto& encryption = plan.encryption();
    QString password;
    int keyBytes = 0;
    bool keyChanged = false;
    if (encryption.isEnabled()) {
        password = encryption.password();
        keyBytes = 16 + 8 * int(encryption.encryptionType());
        // Copies made under an earlier password would need that password to
        // restore; a new password makes every file be copied again.
        const auto before = store->bunch(active.plan.storageId, active.plan.id);
        const auto earlier = before ? NVB::Info::Plan::Factory::create(before->planXml) : nullptr;
        const auto* earlierPlan = dynamic_cast<const NVB::Info::Plan::Backup*>(earlier.data());
        keyChanged = !earlierPlan || earlierPlan->encryption().password() != password
            || earlierPlan->encryption().encryptionType() != encryption.encryptionType();
    }
    // Run folders that no restore point names are what killed or failed runs
    // left behind; they are removed before this run starts.
    QSet<QString> kept;
    for (const StoredRestorePoint& recorded : store->restorePoints(active.plan.storageId, active.plan.id))
        kept.insert(QStringLiteral("%1/%2")
                        .arg(RunPreparation::noBraces(recorded.generationId))
                        .arg(recorded.sequenceNumber, 6, 10, QLatin1Char('0')));
    const QString planFolder
        = QStringLiteral("%1/NVB_%2/%3").arg(parameters.storageRoot, prefix, RunPreparation::noBraces(active.plan.id));
    const QString storeFile = store->filePath();
    const QString storageRoot = parameters.storageRoot;
    RunWork work = [report, parameters = std::move(parameters), selection = std::move(selection), kept, planFolder,
                       previousGeneration, storeFile, password, keyBytes, keyChanged,
                       checkEarlier = plan.useConsistencyCheck(),
                       runId = active.run.id](const std::atomic_bool& stop) mutable {
        sweepRunFolders(planFolder, kept);
        // The previous point is read a folder at a time, on this worker's
        // own connection. Unreadable, every file is copied again: slow, but
        // nothing is lost.
        StoreDatabase database;
        std::optional<RepositoryStore> repository;
        bool replacesAll = false;
        const bool opened = database.open(storeFile);
        std::optional<ContentStaging> staging;
        if (opened) {
            staging.emplace(database, runId);
            parameters.stageContent = [&staging](const QList<StoredContent>& batch) { return staging->add(batch); };
        }
        if (!previousGeneration.isNull()) {
            std::optional<QStringList> parents;
            if (opened) {
                repository.emplace(database);
                parents = repository->currentParents(previousGeneration);
            }
            if (parents) {
                parameters.previousParents = *parents;
                // Copies under another key are not handed to the walk, so
                // the check after the run still reads them.
                parameters.checkPrevious = checkEarlier && !keyChanged;
                parameters.previousChildren = [&repository, previousGeneration, keyChanged](const QString& folder) {
                    auto children = repository->currentChildren(previousGeneration, folder);
                    if (children && keyChanged) {
                        // Copies under another key are never reused, yet the
                        // entries stay so that files gone since are recorded
                        // as removed: an entry without an object is copied anew.
                        for (StoredContent& child : *children) {
                            if (isEnciphered(ObjectEncoding(child.encoding)))
                                child.object.clear();
                        }
                    }
                    return children;
                };
            } else {
                replacesAll = true;
                NVL::NvlDebug(QStringLiteral("NVB")).warning()
                    << QStringLiteral("The previous restore point could not be read: %1").arg(database.lastError());
            }
        }
        if (keyBytes > 0 && !keyChanged && repository) {
            // The plan keeps the salt of its earlier copies, so restoring a
            // point derives one key, not one for every run it draws from.
            const auto sealed = repository->currentObjectEncoded(previousGeneration, int(ObjectEncoding::Enciphered));
            if (sealed) {
                QFile object(
                    QFile::decodeName(NVL::ByteName::encode(parameters.storageRoot + QLatin1Char('/') + *sealed)));
                if (object.open(QIODevice::ReadOnly)) {
                    // A block increment keeps its cipher header behind its own.
                    QString notIncrement;
                    if (!IncrementHeader::read(object.handle(), &notIncrement))
                        ::lseek(object.handle(), 0, SEEK_SET);
                    const auto key = ObjectOpener::keyOf(object.handle(), password);
                    if (key && key->key().size() == keyBytes)
                        parameters.key = key;
                }
            }
        }
        if (keyBytes > 0 && !parameters.key) {
            // Derived here, on the worker: the derivation is slow on purpose.
            parameters.key = ObjectKey::create(password, keyBytes);
            if (!parameters.key)
                return RunPreparation::failedOutcome(QStringLiteral("The encryption key cannot be made"));
        }
        if (parameters.blockSize > 0 && (database.isOpen() || database.open(storeFile)))
            parameters.blockMap = [&database](const QString& object) { return BlockStore(database).map(object); };
        FileBackupJob job(parameters, selection);
        auto result = job.run(stop, report);
        // Recorded ahead of the point: a map whose point never commits names
        // an object no point names, and is never looked up.
        if (!result.blockMaps.isEmpty() && !(database.isOpen() && BlockStore(database).save(result.blockMaps)))
            NVL::NvlDebug(QStringLiteral("NVB")).warning()
                << QStringLiteral("Block maps of the plan %1 were not recorded; its changed files will be stored "
                                  "whole once more: %2")
                       .arg(parameters.planId.toString(), database.lastError());
        RunOutcome outcome = RunPreparation::outcomeOf(result);
        outcome.changes = ContentChanges {
            std::move(result.content), std::move(result.removed), std::move(result.emptiedFolders), replacesAll};
        outcome.changes->stagedRun = staging && staging->count() > 0 ? runId : 0;
        outcome.checkedObjects = std::move(result.checkedObjects);
        std::sort(outcome.checkedObjects.begin(), outcome.checkedObjects.end());
        if (result.previousChecked)
            outcome.walkedGeneration = previousGeneration;
        outcome.walkedProblems = std::move(result.previousProblems);
        return outcome;
    };
    QList<qint64> earlierPoints;
    if (plan.useConsistencyCheck()) {
        for (const StoredRestorePoint& recorded : store->restorePoints(active.plan.storageId, active.plan.id))
            earlierPoints << recorded.rowId;
    }
    return ConsistencyCheck::around(storageRoot, storeFile, earlierPoints, std::move(work));
}

template<typename Job>
RunWork LegacyFileRun::pointJob(
    typename Job::Parameters parameters, qint64 row, const QString& storeFile, const ProgressSink& report)
{
    return [report, parameters = std::move(parameters), row, storeFile](const std::atomic_bool& stop) mutable {
        QString error;
        parameters.content = RunPreparation::loadContent(storeFile, row, &error);
        if (!error.isEmpty())
            return RunPreparation::failedOutcome(error);
        Job job(parameters);
        return RunPreparation::outcomeOf(job.run(stop, report));
    };
}

RunWork LegacyFileRun::restore(const ActiveRun& active, const NVB::Info::Plan::RestoreFile& plan, const QString& folder,
    const StoredRestorePoint& point, const QString& storeFile, const ProgressSink& report)
{
    FileRestoreJob::Parameters parameters;
    parameters.planId = active.plan.id;
    parameters.planName = active.plan.name;
    parameters.storageRoot = QDir::cleanPath(folder);
    parameters.items = plan.restoreItems();
    parameters.destination = plan.restoreToOriginalLocation() ? QString() : plan.destination();
    parameters.skipExistingFiles = plan.skipExistingFiles();
    parameters.onlyNewFiles = plan.onlyNewFiles();
    parameters.password = plan.encryptionPassword();
    return pointJob<FileRestoreJob>(std::move(parameters), point.rowId, storeFile, report);
}

RunWork LegacyFileRun::verify(const ActiveRun& active, const QString& folder, qint64 pointRow, const QString& storeFile,
    const ProgressSink& report)
{
    FileVerifyJob::Parameters parameters;
    parameters.planId = active.plan.id;
    parameters.planName = active.plan.name;
    parameters.storageRoot = QDir::cleanPath(folder);
    const auto record = NVB::Info::Plan::Factory::create(active.plan.xml);
    if (const auto* backup = dynamic_cast<const NVB::Info::Plan::Backup*>(record.data()))
        parameters.password = backup->encryption().password();
    return pointJob<FileVerifyJob>(std::move(parameters), pointRow, storeFile, report);
}

void LegacyFileRun::sweepRunFolders(const QString& planFolder, const QSet<QString>& kept)
{
    QDir plan(planFolder);
    for (const QString& generation : plan.entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::Hidden)) {
        if (QUuid(generation).isNull())
            continue; // the new format's repository, or nothing of ours
        QDir folder(plan.filePath(generation));
        for (const QString& run : folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::Hidden)) {
            if (!kept.contains(generation + QLatin1Char('/') + run))
                QDir(folder.filePath(run)).removeRecursively();
        }
        folder.rmdir(QStringLiteral("."));
        plan.rmdir(generation);
    }
}

} // namespace NVB::Engine
