#include "runmanager.h"

#include <limits>

#include <QDir>
#include <QFileInfo>
#include <QSet>
#include <QtConcurrent>

#include "accountfolder.h"
#include "actions/planactions.h"
#include "archiverun.h"
#include "blocks/blockbase.h"
#include "core/nvldebug.h"
#include "diskimagerun.h"
#include "filebackupjob.h"
#include "legacyfilerun.h"
#include "notify/runnotifier.h"
#include "planoptions.h"
#include "records/plan/backupdiskimage.h"
#include "records/plan/backupfile.h"
#include "records/plan/factory.h"
#include "records/plan/planresult.h"
#include "records/plan/planstatus.h"
#include "records/plan/restorediskimage.h"
#include "records/plan/restorefile.h"
#include "runpreparation.h"
#include "runrecorder.h"
#include "runretention.h"
#include "schedule/fullbackuprule.h"
#include "settings/symlinkpolicy.h"
#include "store/enginestore.h"
#include "stores/defaultsettings.h"

namespace NVB::Engine {

using NVB::Info::Plan::PlanResult;
using NVB::Info::Plan::PlanStatus;

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
    else if (verify && dynamic_cast<const NVB::Info::Plan::BackupDiskImage*>(record.data()))
        reason = QStringLiteral("Disk image plans have no verify run: an image is checked block by block when it is "
                                "restored");
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
    if (const auto* image = dynamic_cast<const NVB::Info::Plan::BackupDiskImage*>(&record))
        return DiskImageRun::prepareBackup(m_store, active, *image, reporter(active.plan.id), work);
    const auto* plan = dynamic_cast<const NVB::Info::Plan::BackupFile*>(&record);
    if (!plan)
        return QStringLiteral("Only file and disk image backup plans can run on this engine");
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
        // So does a change of encryption or password: a generation has one key.
        if (!lastFile || lastFile->useCompression() != plan->useCompression()
            || lastFile->encryption().isEnabled() != plan->encryption().isEnabled()
            || (plan->encryption().isEnabled()
                && (lastFile->encryption().password() != plan->encryption().password()
                    || lastFile->encryption().encryptionType() != plan->encryption().encryptionType())))
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
    parameters.objectPrefix
        = QStringLiteral("NVB_%1/%2/%3/%4")
              .arg(prefix, RunPreparation::noBraces(active.plan.id), RunPreparation::noBraces(point.generationId))
              .arg(point.sequenceNumber, 6, 10, QLatin1Char('0'));
    parameters.reBackupModifiedSince = plan->reBackupModifiedSince();
    parameters.backupEmptyFolders = plan->backupEmptyFolders();
    parameters.compress = plan->useCompression();
    parameters.skipInUseFiles = plan->skipInUseFiles();
    if (plan->useDifferentialUpload()) {
        parameters.blockSize = BlockBase::blockSizeOf(plan->differentialBlockSize());
        if (plan->forceFullDiffSizeConditionEnable())
            parameters.fullAbovePercent = plan->forceFullDiffSizeCondition();
    }
    const SymlinkPolicy symlinks = SymlinkPolicy::fromSetting(NVB::DefaultSettings::instance()->getBackupSymlink());
    parameters.followFileSymlinks = symlinks.followFileLinks;
    parameters.skipSymlinks = !symlinks.keepLinks;
    // "StayOnOneFileSystem": "true" or "false" for every root; unset, only
    // the root "/" stays on its file system.
    const QString oneFileSystem = NVB::DefaultSettings::instance()->value(QStringLiteral("StayOnOneFileSystem"));
    if (oneFileSystem == QLatin1String("true") || oneFileSystem == QLatin1String("false"))
        parameters.oneFileSystem = oneFileSystem == QLatin1String("true");
    parameters.neverTaken = QStringList {parameters.storageRoot, QFileInfo(m_store->filePath()).absolutePath()};
    const QUuid previousGeneration = previous ? previous->generationId : QUuid();
    if (previous && active.plan.lastFileCount > 0)
        parameters.expectedTotals = TransferScan::Totals {active.plan.lastFileCount, active.plan.lastFileSize};

    FileSelection selection(plan->items(), plan->excludeItems(), FileSelection::FilterType(int(plan->filterType())),
        plan->filter(), plan->excludeFolderList(), plan->excludeSystemAndHidden());
    const RetentionRules rules = RetentionRules::fromPlan(*plan, NVB::DefaultSettings::instance());
    const QString password = encryption.isEnabled() ? encryption.password() : QString();
    const int keyBytes = encryption.isEnabled() ? 16 + 8 * int(encryption.encryptionType()) : 0;
    if (!rules.isEmpty()) {
        active.afterPoint = RunRetention::afterPoint(rules, plan->isArchive(), active.plan.storageId, active.plan.id,
            active.plan.name, parameters.storageRoot, RunPreparation::archiveRoot(prefix, active.plan.id), password);
    }
    const ProgressSink report = reporter(active.plan.id);
    if (plan->isArchive()) {
        *work = ArchiveRun::backup(active, parameters, std::move(selection), prefix,
            previous ? previous->sequenceNumber : 0, plan->useConsistencyCheck(), m_store->filePath(), report, password,
            keyBytes);
        return {};
    }
    *work = LegacyFileRun::backup(
        m_store, active, *plan, prefix, previousGeneration, std::move(parameters), std::move(selection), report);
    return {};
}

QString RunManager::prepareRestore(
    ActiveRun& active, const NVB::Info::Plan::Base& record, std::function<RunOutcome(const std::atomic_bool&)>* work)
{
    if (const auto* image = dynamic_cast<const NVB::Info::Plan::RestoreDiskImage*>(&record))
        return DiskImageRun::prepareRestore(m_store, active, *image, reporter(active.plan.id), work);
    const auto* plan = dynamic_cast<const NVB::Info::Plan::RestoreFile*>(&record);
    if (!plan)
        return QStringLiteral("Only file and disk image restore plans can run on this engine");

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

    const ProgressSink report = reporter(active.plan.id);
    if (RunPreparation::isArchivePoint(folder, prefix, *point))
        *work = ArchiveRun::restore(active, *plan, folder, prefix, *point, report);
    else
        *work = LegacyFileRun::restore(active, *plan, folder, *point, m_store->filePath(), report);
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
    const ProgressSink report = reporter(active.plan.id);
    if (RunPreparation::isArchivePoint(folder, prefix, *point))
        *work = ArchiveRun::verify(active, folder, prefix, *point, report);
    else
        *work = LegacyFileRun::verify(active, folder, point->rowId, m_store->filePath(), report);
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
        RunRecorder::record(storeFile, snapshot, &outcome);
        if (outcome.recorded && outcome.pointRowId > 0 && snapshot.afterPoint)
            snapshot.afterPoint(storeFile, &outcome);
        return outcome;
    }));
}

ProgressSink RunManager::reporter(const QUuid& planId)
{
    return [this, planId](const RunProgress& progress) { reportProgress(planId, progress); };
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
    if (!outcome.prunedGenerations.isEmpty())
        emit generationsRemoved(active.plan.storageId, active.plan.id, outcome.prunedGenerations);
}

} // namespace NVB::Engine
