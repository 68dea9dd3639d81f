#include "runmanager.h"

#include <limits>

#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QSet>
#include <QtConcurrent>

#include "accountfolder.h"
#include "actions/consistencycheck.h"
#include "actions/planactions.h"
#include "archive/archivebackupjob.h"
#include "archive/archiveconsistencycheck.h"
#include "archive/archiverestorejob.h"
#include "core/bytename.h"
#include "core/nvldebug.h"
#include "encryption/objectkey.h"
#include "encryption/objectopener.h"
#include "filebackupjob.h"
#include "filerestorejob.h"
#include "fileverifyjob.h"
#include "notify/runnotifier.h"
#include "planoptions.h"
#include "records/plan/backupfile.h"
#include "records/plan/factory.h"
#include "records/plan/planresult.h"
#include "records/plan/planstatus.h"
#include "records/plan/restorefile.h"
#include "repository/repository.h"
#include "retention/retentionjob.h"
#include "schedule/fullbackuprule.h"
#include "storage/filesystemdriver.h"
#include "store/contentstaging.h"
#include "store/enginestore.h"
#include "store/repositorystore.h"
#include "store/runstore.h"
#include "store/storedatabase.h"
#include "stores/defaultsettings.h"

namespace NVB::Engine {

using NVB::Info::Plan::PlanResult;
using NVB::Info::Plan::PlanStatus;

namespace {

QString noBraces(const QUuid& id)
{
    return id.toString(QUuid::WithoutBraces);
}

// The account's folder, ending in a slash, or an empty text with the reason.
// A restore point's content, read on the calling worker's own connection: a
// point of many files takes a while to read, and the serving thread's
// connection must stay free. Empty, with `error` set, when the store fails.
QList<StoredContent> loadContent(const QString& storeFile, qint64 row, QString* error)
{
    StoreDatabase database;
    if (!database.open(storeFile)) {
        *error = database.lastError();
        return {};
    }
    QList<StoredContent> content = RepositoryStore(database).content(row);
    database.close();
    return content;
}

template<typename JobResult> RunOutcome outcomeOf(JobResult&& result)
{
    RunOutcome outcome;
    outcome.planResult = result.planResult;
    outcome.message = result.message;
    outcome.files = std::move(result.files);
    outcome.totals = result.totals;
    return outcome;
}

// The new format's repository of a plan, as a key below the account's folder.
QString archiveRoot(const QString& prefix, const QUuid& planId)
{
    return QStringLiteral("NVB_%1/%2/archive").arg(prefix, noBraces(planId));
}

// A point of the new format is known by its tree on the storage.
bool isArchivePoint(const QString& folder, const QString& prefix, const StoredRestorePoint& point)
{
    const Repository repository(nullptr, archiveRoot(prefix, point.bunchId));
    return FileSystemDriver(QDir::cleanPath(folder))
        .stat(repository.treeKey(point.generationId, point.sequenceNumber))
        .exists;
}

RunOutcome failedOutcome(const QString& message)
{
    RunOutcome outcome;
    outcome.planResult = PlanResult::Failed;
    outcome.message = message;
    return outcome;
}

} // namespace

RunManager::RunManager(EngineStore* store, QObject* parent)
    : QObject(parent)
    , m_store(store)
{
    qRegisterMetaType<NVB::Engine::RunProgress>();
    qRegisterMetaType<NVB::Engine::StoredRestorePoint>();
}

RunManager::~RunManager()
{
    stopAll();
}

QString RunManager::start(const QUuid& planId, bool forceFull, bool verify)
{
    if (m_runs.contains(planId))
        return QStringLiteral("The plan is running already");
    const auto stored = m_store->plan(planId);
    if (!stored)
        return QStringLiteral("There is no plan with the id %1").arg(planId.toString());

    ActiveRun active;
    active.plan = *stored;
    active.stop = std::make_shared<std::atomic_bool>(false);
    active.clock.start();
    active.run.planId = planId;
    active.run.planName = stored->name;
    active.run.operation = stored->subtype;
    active.run.result = PlanResult::Running;
    active.run.startUtc = QDateTime::currentDateTimeUtc();
    const auto runId = m_store->beginRun(active.run);
    if (!runId)
        return QStringLiteral("Cannot record the run: %1").arg(m_store->lastError());
    active.run.id = *runId;
    m_store->setPlanStatus(planId, PlanStatus::Running);

    const auto record = NVB::Info::Plan::Factory::create(stored->xml);
    std::function<RunOutcome(const std::atomic_bool&)> work;
    QString reason;
    if (!record)
        reason = QStringLiteral("The stored plan cannot be read");
    else if (stored->subtype == 1 && verify)
        reason = prepareVerify(active, &work);
    else if (verify)
        reason = QStringLiteral("Only a backup plan's data can be verified");
    else if (stored->subtype == 1)
        reason = prepareBackup(active, *record, forceFull, &work);
    else
        reason = prepareRestore(active, *record, &work);
    if (record) {
        unsigned long long limit = record->schedule().stopAfter();
        // A forced full run is bounded by the full schedule's own limit.
        const auto* backup = dynamic_cast<const NVB::Info::Plan::Backup*>(record.data());
        if (forceFull && backup && backup->forceFullSchedule().stopAfter() > 0)
            limit = backup->forceFullSchedule().stopAfter();
        active.stopAfterSeconds = qint64(qMin<unsigned long long>(limit, 1ull << 40));
    }
    if (!reason.isEmpty()) {
        work = [reason](const std::atomic_bool&) {
            RunOutcome outcome;
            outcome.planResult = PlanResult::Failed;
            outcome.message = reason;
            return outcome;
        };
        active.makesPoint = false;
    } else if (const auto* backup = dynamic_cast<const NVB::Info::Plan::Backup*>(record.data()); backup && !verify) {
        work = PlanActions::around(backup->actions(), std::move(work));
    }
    if (record && !verify)
        work = RunNotifier::around(*record, std::move(work));
    const int subtype = stored->subtype;
    m_runs.insert(planId, active);
    emit started(planId, subtype);
    launch(planId, std::move(work));
    return {};
}

QString RunManager::prepareBackup(ActiveRun& active, const NVB::Info::Plan::Base& record, bool forceFull,
    std::function<RunOutcome(const std::atomic_bool&)>* work)
{
    const auto* plan = dynamic_cast<const NVB::Info::Plan::BackupFile*>(&record);
    if (!plan)
        return QStringLiteral("Only file backup plans can run on this engine");
    const QString option = PlanOptions::unperformed(*plan);
    if (!option.isEmpty()) {
        return QStringLiteral("The plan asks for %1, which this engine does not perform yet; turn it off to run the "
                              "plan")
            .arg(option);
    }

    QString prefix;
    QString error;
    const QString folder = AccountFolder::prepare(m_store, active.plan.storageId, &prefix, &error);
    if (folder.isEmpty())
        return error;

    if (!forceFull
        && FullBackupRule::sizeConditionMet(*plan, m_store->restorePoints(active.plan.storageId, active.plan.id)))
        forceFull = true;
    auto previous = forceFull ? std::nullopt : m_store->latestRestorePoint(active.plan.storageId, active.plan.id);
    if (previous && plan->isArchive()) {
        // A change of compression starts a new generation: a generation's
        // chunks all pass through one transform.
        const auto last = m_store->bunch(active.plan.storageId, active.plan.id);
        const auto lastPlan = last ? NVB::Info::Plan::Factory::create(last->planXml) : nullptr;
        const auto* lastFile = dynamic_cast<const NVB::Info::Plan::BackupFile*>(lastPlan.get());
        if (!lastFile || lastFile->useCompression() != plan->useCompression())
            previous.reset();
    }
    active.makesPoint = true;
    active.newBunch = !m_store->bunch(active.plan.storageId, active.plan.id).has_value();
    active.bunch = StoredBunch {active.plan.storageId, active.plan.id, active.plan.name, 0, active.plan.xml};
    StoredRestorePoint& point = active.point;
    point.connectionId = active.plan.storageId;
    point.bunchId = active.plan.id;
    point.startUtc = active.run.startUtc;
    const auto& encryption = plan->encryption();
    // Claimed only when every copy of the point is enciphered: copies of
    // another password or none are never reused for it (see below).
    point.encrypted = encryption.isEnabled();
    if (previous) {
        point.generationId = previous->generationId;
        point.sequenceNumber = previous->sequenceNumber + 1;
        point.backupType = 2;
    } else {
        point.generationId = QUuid::createUuid();
        point.sequenceNumber = 1;
        point.backupType = 0;
        active.newGeneration = true;
    }

    FileBackupJob::Parameters parameters;
    parameters.planId = active.plan.id;
    parameters.planName = active.plan.name;
    parameters.storageRoot = QDir::cleanPath(folder);
    parameters.objectPrefix = QStringLiteral("NVB_%1/%2/%3/%4")
                                  .arg(prefix, noBraces(active.plan.id), noBraces(point.generationId))
                                  .arg(point.sequenceNumber, 6, 10, QLatin1Char('0'));
    parameters.reBackupModifiedSince = plan->reBackupModifiedSince();
    parameters.backupEmptyFolders = plan->backupEmptyFolders();
    parameters.compress = plan->useCompression();
    parameters.skipInUseFiles = plan->skipInUseFiles();
    QString password;
    int keyBytes = 0;
    bool keyChanged = false;
    if (encryption.isEnabled()) {
        password = encryption.password();
        keyBytes = 16 + 8 * int(encryption.encryptionType());
        // Copies made under an earlier password would need that password to
        // restore; a new password makes every file be copied again.
        const auto before = m_store->bunch(active.plan.storageId, active.plan.id);
        const auto earlier = before ? NVB::Info::Plan::Factory::create(before->planXml) : nullptr;
        const auto* earlierPlan = dynamic_cast<const NVB::Info::Plan::Backup*>(earlier.data());
        keyChanged = !earlierPlan || earlierPlan->encryption().password() != password
            || earlierPlan->encryption().encryptionType() != encryption.encryptionType();
    }
    parameters.followFileSymlinks = NVB::DefaultSettings::instance()->getBackupSymlink() == QLatin1String("true");
    // "StayOnOneFileSystem": "true" or "false" for every root; unset, only
    // the root "/" stays on its file system.
    const QString oneFileSystem = NVB::DefaultSettings::instance()->value(QStringLiteral("StayOnOneFileSystem"));
    if (oneFileSystem == QLatin1String("true") || oneFileSystem == QLatin1String("false"))
        parameters.oneFileSystem = oneFileSystem == QLatin1String("true");
    parameters.neverTaken = QStringList {parameters.storageRoot, QFileInfo(m_store->filePath()).absolutePath()};
    // Run folders that no restore point names are what killed or failed runs
    // left behind; they are removed before this run starts.
    QSet<QString> kept;
    for (const StoredRestorePoint& recorded : m_store->restorePoints(active.plan.storageId, active.plan.id))
        kept.insert(QStringLiteral("%1/%2")
                        .arg(noBraces(recorded.generationId))
                        .arg(recorded.sequenceNumber, 6, 10, QLatin1Char('0')));
    const QString planFolder
        = QStringLiteral("%1/NVB_%2/%3").arg(parameters.storageRoot, prefix, noBraces(active.plan.id));
    const QUuid previousGeneration = previous ? previous->generationId : QUuid();
    const QString storeFile = m_store->filePath();
    const QString storageRoot = parameters.storageRoot;

    FileSelection selection(plan->items(), plan->excludeItems(), FileSelection::FilterType(int(plan->filterType())),
        plan->filter(), plan->excludeFolderList(), plan->excludeSystemAndHidden());
    const RetentionRules rules = RetentionRules::fromPlan(*plan, NVB::DefaultSettings::instance());
    if (!rules.isEmpty()) {
        active.afterPoint = [rules, connection = active.plan.storageId, bunch = active.plan.id,
                                root = parameters.storageRoot](const QString& storeFile, RunOutcome* outcome) {
            const auto pruned
                = RetentionJob::apply(storeFile, connection, bunch, root, rules, QDateTime::currentDateTimeUtc());
            NVL::NvlDebug log(QStringLiteral("NVB"));
            if (!pruned.error.isEmpty())
                log.warning() << QStringLiteral("Retention of the plan %1: %2").arg(bunch.toString(), pruned.error);
            else if (pruned.versions > 0)
                log.info() << QStringLiteral("Retention of the plan %1 removed %2 versions and %3 restore points")
                                  .arg(bunch.toString())
                                  .arg(pruned.versions)
                                  .arg(pruned.points.size());
            outcome->prunedPoints = pruned.points;
        };
    }
    const QUuid planId = active.plan.id;
    if (plan->isArchive()) {
        ArchiveBackupJob::Parameters archive;
        archive.planId = planId;
        archive.planName = parameters.planName;
        archive.storageRoot = parameters.storageRoot;
        archive.repositoryRoot = archiveRoot(prefix, planId);
        archive.generation = point.generationId;
        archive.sequence = point.sequenceNumber;
        archive.newGeneration = active.newGeneration;
        archive.previousSequence = previous ? previous->sequenceNumber : 0;
        archive.startUtc = point.startUtc;
        archive.reBackupModifiedSince = parameters.reBackupModifiedSince;
        archive.backupEmptyFolders = parameters.backupEmptyFolders;
        archive.compress = parameters.compress;
        archive.followFileSymlinks = parameters.followFileSymlinks;
        archive.neverTaken = parameters.neverTaken;
        archive.oneFileSystem = parameters.oneFileSystem;
        archive.storeFile = m_store->filePath();
        *work = [this, planId, archive = std::move(archive), selection = std::move(selection)](
                    const std::atomic_bool& stop) {
            ArchiveBackupJob job(archive, selection);
            auto result
                = job.run(stop, [this, planId](const RunProgress& progress) { reportProgress(planId, progress); });
            RunOutcome outcome = outcomeOf(result);
            outcome.changes = ContentChanges {
                std::move(result.content), std::move(result.removed), QStringList(), result.replacesAll};
            outcome.bytesRead = result.bytesRead;
            outcome.bytesNew = result.bytesNew;
            outcome.bytesStored = result.bytesStored;
            return outcome;
        };
        *work = ArchiveConsistencyCheck::around(parameters.storageRoot, archiveRoot(prefix, planId),
            point.generationId, plan->useConsistencyCheck(), std::move(*work));
        return {};
    }
    *work = [this, planId, parameters = std::move(parameters), selection = std::move(selection), kept, planFolder,
                previousGeneration, storeFile, password, keyBytes, keyChanged,
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
                return failedOutcome(QStringLiteral("The encryption key cannot be made"));
        }
        FileBackupJob job(parameters, selection);
        auto result = job.run(stop, [this, planId](const RunProgress& progress) { reportProgress(planId, progress); });
        RunOutcome outcome = outcomeOf(result);
        outcome.changes = ContentChanges {
            std::move(result.content), std::move(result.removed), std::move(result.emptiedFolders), replacesAll};
        outcome.changes->stagedRun = staging && staging->count() > 0 ? runId : 0;
        return outcome;
    };
    QList<qint64> earlierPoints;
    if (plan->useConsistencyCheck()) {
        for (const StoredRestorePoint& recorded : m_store->restorePoints(active.plan.storageId, active.plan.id))
            earlierPoints << recorded.rowId;
    }
    *work = ConsistencyCheck::around(storageRoot, storeFile, earlierPoints, std::move(*work));
    return {};
}

template<typename Job>
RunManager::Work RunManager::pointJob(const QUuid& planId, typename Job::Parameters parameters, qint64 row)
{
    const QString storeFile = m_store->filePath();
    return [this, planId, parameters = std::move(parameters), row, storeFile](const std::atomic_bool& stop) mutable {
        QString error;
        parameters.content = loadContent(storeFile, row, &error);
        if (!error.isEmpty())
            return failedOutcome(error);
        Job job(parameters);
        return outcomeOf(
            job.run(stop, [this, planId](const RunProgress& progress) { reportProgress(planId, progress); }));
    };
}

RunManager::Work RunManager::archiveJob(const QUuid& planId, ArchiveRestoreJob::Parameters parameters)
{
    return [this, planId, parameters = std::move(parameters)](const std::atomic_bool& stop) {
        ArchiveRestoreJob job(parameters);
        return outcomeOf(
            job.run(stop, [this, planId](const RunProgress& progress) { reportProgress(planId, progress); }));
    };
}

QString RunManager::prepareRestore(
    ActiveRun& active, const NVB::Info::Plan::Base& record, std::function<RunOutcome(const std::atomic_bool&)>* work)
{
    const auto* plan = dynamic_cast<const NVB::Info::Plan::RestoreFile*>(&record);
    if (!plan)
        return QStringLiteral("Only file restore plans can run on this engine");

    QString prefix;
    QString error;
    const QString folder = AccountFolder::prepare(m_store, active.plan.storageId, &prefix, &error);
    if (folder.isEmpty())
        return error;

    // "NVB_Archive\<bunch id>\<date>": the backup plan whose data to restore.
    const QStringList parts = plan->restorePoint().split(QLatin1Char('\\'));
    const QUuid bunchId = parts.size() >= 2 ? QUuid(QStringLiteral("{%1}").arg(parts.at(1))) : QUuid();
    if (bunchId.isNull())
        return QStringLiteral("The restore plan does not name the backup to restore from");
    const QDateTime pointInTime = plan->restoreType() == 1 ? plan->pointInTime().toUTC() : QDateTime();
    const auto point = m_store->restorePointAt(active.plan.storageId, bunchId, pointInTime);
    if (!point)
        return QStringLiteral("There is no restore point of that backup at the chosen time");

    if (isArchivePoint(folder, prefix, *point)) {
        ArchiveRestoreJob::Parameters parameters;
        parameters.planId = active.plan.id;
        parameters.planName = active.plan.name;
        parameters.storageRoot = QDir::cleanPath(folder);
        parameters.repositoryRoot = archiveRoot(prefix, bunchId);
        parameters.generation = point->generationId;
        parameters.sequence = point->sequenceNumber;
        parameters.items = plan->restoreItems();
        parameters.destination = plan->restoreToOriginalLocation() ? QString() : plan->destination();
        parameters.skipExistingFiles = plan->skipExistingFiles();
        parameters.onlyNewFiles = plan->onlyNewFiles();
        *work = archiveJob(active.plan.id, std::move(parameters));
        return {};
    }
    FileRestoreJob::Parameters parameters;
    parameters.planId = active.plan.id;
    parameters.planName = active.plan.name;
    parameters.storageRoot = QDir::cleanPath(folder);
    parameters.items = plan->restoreItems();
    parameters.destination = plan->restoreToOriginalLocation() ? QString() : plan->destination();
    parameters.skipExistingFiles = plan->skipExistingFiles();
    parameters.onlyNewFiles = plan->onlyNewFiles();
    parameters.password = plan->encryptionPassword();
    *work = pointJob<FileRestoreJob>(active.plan.id, std::move(parameters), point->rowId);
    return {};
}

QString RunManager::prepareVerify(ActiveRun& active, Work* work)
{
    QString prefix;
    QString error;
    const QString folder = AccountFolder::prepare(m_store, active.plan.storageId, &prefix, &error);
    if (folder.isEmpty())
        return error;
    const auto point = m_store->latestRestorePoint(active.plan.storageId, active.plan.id);
    if (!point)
        return QStringLiteral("The plan has no restore point to verify");
    if (isArchivePoint(folder, prefix, *point)) {
        ArchiveRestoreJob::Parameters parameters;
        parameters.planId = active.plan.id;
        parameters.planName = active.plan.name;
        parameters.storageRoot = QDir::cleanPath(folder);
        parameters.repositoryRoot = archiveRoot(prefix, active.plan.id);
        parameters.generation = point->generationId;
        parameters.sequence = point->sequenceNumber;
        parameters.verifyOnly = true;
        *work = archiveJob(active.plan.id, std::move(parameters));
        return {};
    }
    FileVerifyJob::Parameters parameters;
    parameters.planId = active.plan.id;
    parameters.planName = active.plan.name;
    parameters.storageRoot = QDir::cleanPath(folder);
    const auto record = NVB::Info::Plan::Factory::create(active.plan.xml);
    if (const auto* backup = dynamic_cast<const NVB::Info::Plan::Backup*>(record.data()))
        parameters.password = backup->encryption().password();
    *work = pointJob<FileVerifyJob>(active.plan.id, std::move(parameters), point->rowId);
    return {};
}

void RunManager::launch(const QUuid& planId, std::function<RunOutcome(const std::atomic_bool&)> work)
{
    ActiveRun& active = m_runs[planId];
    active.watcher = new QFutureWatcher<RunOutcome>(this);
    connect(active.watcher, &QFutureWatcher<RunOutcome>::finished, this, [this, planId] {
        const auto it = m_runs.find(planId);
        if (it == m_runs.end())
            return;
        finish(planId, it->watcher->result());
    });
    if (active.stopAfterSeconds > 0) {
        // A run that outlives its schedule's limit is stopped like a user stop.
        active.stopAfter = new QTimer(this);
        active.stopAfter->setSingleShot(true);
        connect(active.stopAfter, &QTimer::timeout, this, [this, planId] { stop(planId); });
        active.stopAfter->start(int(qMin<qint64>(active.stopAfterSeconds * 1000, std::numeric_limits<int>::max())));
    }
    auto stop = active.stop;
    const ActiveRun snapshot = active;
    const QString storeFile = m_store->filePath();
    // The run is recorded on the worker too, on a connection of its own: the
    // content of a large restore point takes long to write, and the engine's
    // thread serves the consoles meanwhile.
    active.watcher->setFuture(QtConcurrent::run([work = std::move(work), stop, snapshot, storeFile] {
        RunOutcome outcome = work(*stop);
        record(storeFile, snapshot, &outcome);
        if (outcome.recorded && outcome.pointRowId > 0 && snapshot.afterPoint)
            snapshot.afterPoint(storeFile, &outcome);
        return outcome;
    }));
}

void RunManager::record(const QString& storeFile, const ActiveRun& active, RunOutcome* outcome)
{
    RunRecord run = active.run;
    const qint64 seconds = active.clock.elapsed() / 1000;
    StoredPlan summary = active.plan;
    summary.status = PlanStatus::Idle;
    summary.lastRunUtc = active.run.startUtc;
    summary.lastDuration = seconds;
    summary.lastFileCount = outcome->totals.scannedCount;
    summary.lastFileSize = outcome->totals.scannedSize;
    summary.lastUploadedCount = outcome->totals.copiedCount;
    summary.lastUploadedSize = outcome->totals.copiedSize;
    summary.lastFailedCount = outcome->totals.failedCount;

    // A stopped or failed backup leaves no restore point: it would promise
    // files that were never copied.
    const bool keepsPoint = active.makesPoint
        && (outcome->planResult == PlanResult::Success || outcome->planResult == PlanResult::Warning);
    StoredRestorePoint point = active.point;
    point.status = outcome->planResult == PlanResult::Warning ? 1 : 0;
    point.sizeOnStorage = outcome->totals.copiedSize;
    QString message = outcome->message;
    qint64 runSize = outcome->totals.copiedSize;
    if (outcome->bytesStored >= 0 && keepsPoint) {
        // What deduplication saved, in the plan summary and the history:
        // the uploaded size is what reached the storage.
        const QLocale c = QLocale::c();
        const QString figures
            = QStringLiteral("Read %1, new %2, stored %3")
                  .arg(c.formattedDataSize(outcome->bytesRead), c.formattedDataSize(outcome->bytesNew),
                      c.formattedDataSize(outcome->bytesStored));
        message = message.isEmpty() ? figures : QStringLiteral("%1 (%2)").arg(message, figures);
        summary.lastUploadedSize = outcome->bytesStored;
        point.sizeOnStorage = outcome->bytesStored;
        runSize = outcome->bytesStored;
    }

    StoreDatabase database;
    QString error;
    if (database.open(storeFile)) {
        const auto attempt = [&](int result, const QString& message, bool withPoint) {
            run.result = result;
            run.durationSeconds = seconds;
            run.size = runSize;
            run.fileCount = outcome->totals.copiedCount;
            run.errorMessage = message;
            summary.lastResult = result;
            summary.lastMessage = message;
            qint64 row = 0;
            const StoredBunch* bunch = withPoint ? &active.bunch : nullptr;
            const StoredRestorePoint* made = withPoint ? &point : nullptr;
            const bool ok = outcome->changes
                ? RunStore(database).finishRun(run, outcome->files, summary, bunch, made, *outcome->changes, &row)
                : RunStore(database).finishRun(run, outcome->files, summary, bunch, made, outcome->content, &row);
            point.rowId = row;
            return ok;
        };
        if (attempt(outcome->planResult, message, keepsPoint)) {
            outcome->recorded = true;
            outcome->pointRowId = keepsPoint ? point.rowId : 0;
            return;
        }
        error = database.lastError();
        if (keepsPoint) {
            // A restore point that could not be committed is a failed run,
            // and says so.
            outcome->planResult = PlanResult::Failed;
            outcome->message = QStringLiteral("The restore point could not be recorded: %1").arg(error);
            if (attempt(outcome->planResult, outcome->message, false)) {
                outcome->recorded = true;
                return;
            }
            error = database.lastError();
        }
    } else {
        error = database.lastError();
    }
    outcome->planResult = PlanResult::Failed;
    outcome->recordError = error.isEmpty() ? QStringLiteral("unknown") : error;
}

void RunManager::reportProgress(const QUuid& planId, const RunProgress& progress)
{
    // Called on the worker: hand the figures to the engine's thread.
    QMetaObject::invokeMethod(
        this,
        [this, planId, progress] {
            const auto it = m_runs.constFind(planId);
            if (it != m_runs.cend())
                emit progressed(planId, it->plan.subtype, progress);
        },
        Qt::QueuedConnection);
}

bool RunManager::stop(const QUuid& planId)
{
    const auto it = m_runs.find(planId);
    if (it == m_runs.end())
        return false;
    *it->stop = true;
    return true;
}

void RunManager::stopAll()
{
    for (auto it = m_runs.begin(); it != m_runs.end(); ++it)
        *it->stop = true;
    // Finishing records each run, so wait for the workers and finish here:
    // the event loop may not run again.
    const QList<QUuid> ids = m_runs.keys();
    for (const QUuid& id : ids) {
        const auto it = m_runs.find(id);
        if (it == m_runs.end() || !it->watcher)
            continue;
        it->watcher->waitForFinished();
        finish(id, it->watcher->result());
    }
}

void RunManager::finish(const QUuid& planId, const RunOutcome& outcome)
{
    const auto it = m_runs.find(planId);
    if (it == m_runs.end())
        return;
    ActiveRun active = *it;
    m_runs.erase(it);
    active.watcher->deleteLater();
    if (active.stopAfter)
        active.stopAfter->deleteLater();

    if (!outcome.recorded) {
        NVL::NvlDebug(QStringLiteral("NVB")).error() << QStringLiteral("The run of plan %1 could not be recorded: %2")
                                                            .arg(planId.toString(), outcome.recordError);
        m_store->setPlanStatus(planId, PlanStatus::Idle);
    }
    StoredRestorePoint point;
    const bool madePoint = outcome.recorded && outcome.pointRowId > 0;
    if (madePoint) {
        point = active.point;
        point.rowId = outcome.pointRowId;
        point.status = outcome.planResult == PlanResult::Warning ? 1 : 0;
        point.sizeOnStorage = outcome.bytesStored >= 0 ? outcome.bytesStored : outcome.totals.copiedSize;
    }
    emit finished(planId, active.plan.subtype, outcome.planResult, point, madePoint && active.newBunch,
        madePoint && active.newGeneration);
    if (!outcome.prunedPoints.isEmpty())
        emit restorePointsRemoved(outcome.prunedPoints);
}

void RunManager::sweepRunFolders(const QString& planFolder, const QSet<QString>& kept)
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
