#include "engine.h"

#include "archive/bunchremover.h"
#include "archive/generationremover.h"
#include "core/nvldebug.h"
#include "plansummary.h"
#include "progress/progressreport.h"
#include "records/plan/backup.h"
#include "records/plan/backupfile.h"
#include "records/plan/factory.h"
#include "records/plan/planresult.h"
#include "records/plan/planstatus.h"
#include "records/plan/restorefile.h"
#include "runs/runmanager.h"
#include "schedule/scheduler.h"
#include "server/notifier.h"
#include "service/notification/format.h"
#include "service/v2/notification/addednewbunch.h"
#include "service/v2/notification/addednewconnection.h"
#include "service/v2/notification/addednewgeneration.h"
#include "service/v2/notification/addednewplan.h"
#include "service/v2/notification/addednewrestorepoint.h"
#include "service/v2/notification/removedbunch.h"
#include "service/v2/notification/removedconnection.h"
#include "service/v2/notification/removedplan.h"
#include "service/v2/notification/removedgeneration.h"
#include "service/v2/notification/removenbfdatastatus.h"
#include "service/v2/notification/removerestorepoint.h"
#include "service/v2/notification/startedplan.h"
#include "service/v2/notification/stoppedplan.h"
#include "service/v2/notification/updateconnection.h"
#include "service/v2/notification/updateplan.h"
#include "store/enginestore.h"

namespace NVB::Engine {

namespace Format = NVB::Common::Communication::Notification::Format;
namespace V2N = NVB::Common::Communication::V2::Notification;
using NVB::Info::Plan::PlanResult;
using NVB::Info::Plan::PlanStatus;

namespace {

QJsonObject idMessage(const char* key, const QUuid& id)
{
    return QJsonObject{{QLatin1String(key), id.toString()}};
}

// The network shares below the virtual root under which the file tree shows
// them.
const QString SharesRoot = QStringLiteral("/NVB_SHARES/");

} // namespace

Engine::Engine(EngineStore* store, Notifier* notifier, QObject* parent)
    : QObject(parent)
    , m_store(store)
    , m_notifier(notifier)
    , m_runs(new RunManager(store, this))
    , m_scheduler(new Scheduler(store, this))
{
    connect(m_runs, &RunManager::started, this, &Engine::onRunStarted);
    connect(m_runs, &RunManager::progressed, this, &Engine::onRunProgress);
    connect(m_runs, &RunManager::finished, this, &Engine::onRunFinished);
    connect(m_runs, &RunManager::restorePointsRemoved, this, [this](const QList<StoredRestorePoint>& points) {
        for (const StoredRestorePoint& point : points) {
            V2N::RemoveRestorePoint removed;
            removed.setConnectionId(point.connectionId);
            removed.setBunchId(point.bunchId);
            removed.setGenerationId(point.generationId);
            removed.setSequenceNumber(point.sequenceNumber);
            m_notifier->notifyV2(removed);
        }
    });
    connect(m_runs, &RunManager::generationsRemoved, this,
        [this](const QUuid& connectionId, const QUuid& bunchId, const QList<QUuid>& generations) {
            for (const QUuid& generation : generations) {
                V2N::RemovedGeneration removed;
                removed.setConnectionId(connectionId);
                removed.setBunchId(bunchId);
                removed.setGenerationId(generation);
                m_notifier->notifyV2(removed);
            }
        });
    connect(m_scheduler, &Scheduler::due, this, &Engine::onDue);
}

Engine::~Engine() = default;

void Engine::start()
{
    const int closed = m_store->closeInterruptedRuns(PlanResult::Running, PlanResult::Interrupted, PlanStatus::Idle);
    if (closed > 0) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning()
            << QStringLiteral("%1 runs were cut short when the engine last stopped").arg(closed);
    }
    m_scheduler->reload(true);
}

void Engine::shutdown()
{
    m_runs->stopAll();
    m_notifier->notify(Format::System::CloseAll::Type, {});
}

bool Engine::isRunning(const QUuid& id) const
{
    return m_runs->isRunning(id);
}

// ---- plans ---------------------------------------------------------------

QString Engine::unplainPath(const NVB::Info::Plan::Base& record)
{
    // A path the engine joins to a storage or restore folder must name one
    // place only: ".." could climb out of the folder it is joined to.
    QStringList paths;
    if (const auto* backup = dynamic_cast<const NVB::Info::Plan::BackupFile*>(&record))
        paths << backup->items() << backup->excludeItems();
    if (const auto* restore = dynamic_cast<const NVB::Info::Plan::RestoreFile*>(&record)) {
        paths << restore->restoreItems();
        if (!restore->restoreToOriginalLocation() || !restore->destination().isEmpty())
            paths << restore->destination();
    }
    for (const QString& path : std::as_const(paths)) {
        if (path.trimmed().isEmpty())
            continue;
        QString trimmed = path;
        while (trimmed.size() > 1 && trimmed.endsWith(QLatin1Char('/')))
            trimmed.chop(1);
        if (!trimmed.startsWith(QLatin1Char('/')))
            return path;
        const QStringList parts = trimmed.mid(1).split(QLatin1Char('/'));
        for (const QString& part : parts) {
            if ((part.isEmpty() && trimmed != QLatin1String("/")) || part == QLatin1String(".")
                || part == QLatin1String(".."))
                return path;
        }
    }
    return {};
}

Outcome Engine::savePlan(const QUuid& id, const QString& xml, const QString& profile)
{
    const auto record = NVB::Info::Plan::Factory::create(xml);
    if (!record)
        return Outcome::failure(QStringLiteral("The plan's XML cannot be read; see the engine's log for the element"));
    if (!id.isNull() && !record->id().isNull() && id != record->id())
        return Outcome::failure(QStringLiteral("The plan's id does not match the id of the request"));
    if (!id.isNull())
        record->setId(id);
    if (record->id().isNull())
        return Outcome::failure(QStringLiteral("The plan has no id"));
    if (record->name().trimmed().isEmpty())
        return Outcome::failure(QStringLiteral("The plan has no name"));
    const QString badPath = unplainPath(*record);
    if (!badPath.isEmpty()) {
        return Outcome::failure(QStringLiteral("The plan's path \"%1\" is refused: paths must be absolute, without "
                                               "\".\" or \"..\" components")
                                    .arg(badPath));
    }

    const auto existing = m_store->plan(record->id());
    StoredPlan plan = existing.value_or(StoredPlan{});
    plan.describe(*record);
    plan.profile = profile;
    if (!m_store->savePlan(plan))
        return Outcome::failure(m_store->lastError());

    m_scheduler->update(plan.id);
    if (existing) {
        m_notifier->notify(Format::Plan::Update::Type, idMessage(Format::Plan::Update::Id, plan.id));
        V2N::UpdatePlan update;
        update.setPlanId(plan.id);
        m_notifier->notifyV2(update);
    } else {
        m_notifier->notify(Format::Plan::Add::Type, idMessage(Format::Plan::Add::Id, plan.id));
        V2N::AddedNewPlan added;
        added.setPlanId(plan.id);
        added.setSubType(plan.subtype);
        m_notifier->notifyV2(added);
    }
    return Outcome::success();
}

Outcome Engine::removeGeneration(const QUuid& connectionId, const QUuid& bunchId, const QUuid& generationId)
{
    // Whatever a running backup of the plan reads or writes may lie in it.
    if (m_runs->isRunning(bunchId))
        return Outcome::failure(QStringLiteral("The plan is running; stop it before deleting its data"));
    const GenerationRemover::Result removed = GenerationRemover::remove(m_store, connectionId, bunchId, generationId);
    announceRemoval(connectionId, bunchId, generationId, removed.error, removed.points, {generationId});
    return removed.error.isEmpty() ? Outcome::success() : Outcome::failure(removed.error);
}

Outcome Engine::removeBunch(const QUuid& connectionId, const QUuid& bunchId)
{
    if (m_runs->isRunning(bunchId))
        return Outcome::failure(QStringLiteral("The plan is running; stop it before deleting its data"));
    const BunchRemover::Result removed = BunchRemover::remove(m_store, connectionId, bunchId);
    announceRemoval(connectionId, bunchId, QUuid(), removed.error, removed.points, removed.generations);
    return removed.error.isEmpty() ? Outcome::success() : Outcome::failure(removed.error);
}

void Engine::announceRemoval(const QUuid& connectionId, const QUuid& bunchId, const QUuid& generationId,
    const QString& error, const QList<StoredRestorePoint>& points, const QList<QUuid>& generations)
{
    V2N::RemoveNbfDataStatus status;
    status.setConnectionId(connectionId);
    status.setBunchId(bunchId);
    status.setGenerationId(generationId);
    if (!error.isEmpty()) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << error;
        status.setStatus(5);
        status.setMessage(error);
        m_notifier->notifyV2(status);
        return;
    }
    for (const StoredRestorePoint& point : points) {
        V2N::RemoveRestorePoint gone;
        gone.setConnectionId(point.connectionId);
        gone.setBunchId(point.bunchId);
        gone.setGenerationId(point.generationId);
        gone.setSequenceNumber(point.sequenceNumber);
        m_notifier->notifyV2(gone);
    }
    for (const QUuid& generation : generations) {
        V2N::RemovedGeneration gone;
        gone.setConnectionId(connectionId);
        gone.setBunchId(bunchId);
        gone.setGenerationId(generation);
        m_notifier->notifyV2(gone);
    }
    if (generationId.isNull()) {
        V2N::RemovedBunch gone;
        gone.setConnectionId(connectionId);
        gone.setBunchId(bunchId);
        m_notifier->notifyV2(gone);
    }
    status.setStatus(3);
    m_notifier->notifyV2(status);
}

Outcome Engine::removePlan(const QUuid& id)
{
    if (m_runs->isRunning(id))
        return Outcome::failure(QStringLiteral("The plan is running; stop it before removing it"));
    if (!m_store->removePlan(id))
        return Outcome::failure(m_store->lastError());
    m_scheduler->remove(id);
    m_notifier->notify(Format::Plan::Remove::Type, idMessage(Format::Plan::Remove::Id, id));
    V2N::RemovedPlan removed;
    removed.setPlanId(id);
    m_notifier->notifyV2(removed);
    return Outcome::success();
}

Outcome Engine::startPlan(const QUuid& id, bool forceFull, bool verify)
{
    for (const QUuid& accountId : std::as_const(m_synchronizing)) {
        if (m_store->plansUsingAccount(accountId).contains(id))
            return Outcome::failure(
                QStringLiteral("The repository of this plan's storage is being synchronized; start the plan when it ends"));
    }
    const QString error = m_runs->start(id, forceFull, verify);
    return error.isEmpty() ? Outcome::success() : Outcome::failure(error);
}

void Engine::setSynchronizing(const QUuid& accountId, bool synchronizing)
{
    if (synchronizing)
        m_synchronizing.insert(accountId);
    else
        m_synchronizing.remove(accountId);
}

Outcome Engine::stopPlan(const QUuid& id)
{
    if (!m_store->plan(id))
        return Outcome::failure(QStringLiteral("There is no plan with the id %1").arg(id.toString()));
    if (!m_runs->stop(id))
        return Outcome::failure(QStringLiteral("The plan is not running"));
    return Outcome::success();
}

QJsonArray Engine::planList()
{
    QJsonArray list;
    for (const StoredPlan& plan : m_store->plans()) {
        if (const auto info = planInfo(plan.id))
            list.append(*info);
    }
    return list;
}

std::optional<QJsonObject> Engine::planInfo(const QUuid& id)
{
    const auto plan = m_store->plan(id);
    if (!plan)
        return std::nullopt;
    const auto record = NVB::Info::Plan::Factory::create(plan->xml);
    QString schedule;
    QString fullSchedule;
    bool forceFull = false;
    if (record) {
        schedule = PlanSummary::describe(record->schedule());
        if (const auto* backup = dynamic_cast<const NVB::Info::Plan::Backup*>(record.data())) {
            fullSchedule = PlanSummary::describe(backup->forceFullSchedule());
            forceFull = record->type() == 0;
        }
    }
    return PlanSummary::toJson(*plan, m_scheduler->nextRun(id), schedule, fullSchedule, forceFull);
}

std::optional<QString> Engine::planXml(const QUuid& id)
{
    const auto plan = m_store->plan(id);
    return plan ? std::optional<QString>(plan->xml) : std::nullopt;
}

QStringList Engine::usedShares()
{
    QStringList shares;
    for (const StoredPlan& stored : m_store->plans()) {
        const auto record = NVB::Info::Plan::Factory::create(stored.xml);
        const auto* plan = dynamic_cast<const NVB::Info::Plan::BackupFile*>(record.data());
        if (!plan)
            continue;
        const QStringList items = plan->items();
        for (const QString& item : items) {
            if (!item.startsWith(SharesRoot))
                continue;
            // "/NVB_SHARES/server/share/..." names the share "server/share".
            const QStringList parts = item.mid(SharesRoot.size()).split(QLatin1Char('/'), Qt::SkipEmptyParts);
            const QString share = SharesRoot + parts.mid(0, 2).join(QLatin1Char('/'));
            if (parts.size() >= 2 && !shares.contains(share))
                shares.append(share);
        }
    }
    return shares;
}

// ---- accounts ------------------------------------------------------------

Outcome Engine::saveAccount(const StoredAccount& account)
{
    if (account.id.isNull())
        return Outcome::failure(QStringLiteral("The storage account has no id"));
    if (account.displayName.trimmed().isEmpty())
        return Outcome::failure(QStringLiteral("The storage account has no name"));
    const bool existed = m_store->account(account.id).has_value();
    if (!m_store->saveAccount(account))
        return Outcome::failure(m_store->lastError());
    if (existed) {
        m_notifier->notify(Format::Storage::Update::Type, idMessage(Format::Storage::Update::Id, account.id));
        V2N::UpdateConnection update;
        update.setConnectionId(account.id);
        m_notifier->notifyV2(update);
    } else {
        m_notifier->notify(Format::Storage::Add::Type, idMessage(Format::Storage::Add::Id, account.id));
        V2N::AddedNewConnection added;
        added.setConnectionId(account.id);
        m_notifier->notifyV2(added);
    }
    return Outcome::success();
}

Outcome Engine::removeAccount(const QUuid& id)
{
    const QList<QUuid> users = m_store->plansUsingAccount(id);
    if (!users.isEmpty()) {
        return Outcome::failure(QStringLiteral("The storage account is used by %1 plans; change or remove them first")
                                    .arg(users.size()));
    }
    if (!m_store->removeAccount(id))
        return Outcome::failure(m_store->lastError());
    m_notifier->notify(Format::Storage::Remove::Type, idMessage(Format::Storage::Remove::Id, id));
    V2N::RemovedConnection removed;
    removed.setConnectionId(id);
    m_notifier->notifyV2(removed);
    return Outcome::success();
}

QJsonArray Engine::connections()
{
    QJsonArray rows;
    for (const StoredAccount& account : m_store->accounts()) {
        if (const auto row = connection(account.id))
            rows.append(*row);
    }
    return rows;
}

std::optional<QJsonObject> Engine::connection(const QUuid& id)
{
    const auto account = m_store->account(id);
    if (!account)
        return std::nullopt;
    QJsonObject row;
    row.insert(QStringLiteral("DisplayName"), account->displayName);
    row.insert(QStringLiteral("ID"), account->id.toString());
    row.insert(QStringLiteral("Path"), account->params.value(QStringLiteral("Path")).toString());
    row.insert(QStringLiteral("Prefix"), account->prefix);
    row.insert(QStringLiteral("PrefixArray"), QJsonArray{account->prefix});
    row.insert(QStringLiteral("Type"), account->type);
    row.insert(QStringLiteral("SpaceLimit"), 0);
    qint64 used = 0;
    for (const StoredBunch& bunch : m_store->bunches(account->id)) {
        for (const StoredGeneration& generation : m_store->generations(account->id, bunch.id))
            used += generation.storageSize;
    }
    row.insert(QStringLiteral("SpaceUsed"), double(used));
    row.insert(QStringLiteral("DetailParams"), account->params);
    row.insert(QStringLiteral("SyncStatus"), false);
    return row;
}

// ---- runs ----------------------------------------------------------------

void Engine::notifyStateChange(const QUuid& planId, int state, int lastState)
{
    m_notifier->notify(Format::Plan::StateChange::Type,
                       QJsonObject{{QLatin1String(Format::Plan::StateChange::Id), planId.toString()},
                                   {QLatin1String(Format::Plan::StateChange::State), state},
                                   {QLatin1String(Format::Plan::StateChange::LastState), lastState}});
}

void Engine::onRunStarted(const QUuid& planId, int)
{
    notifyStateChange(planId, PlanStatus::Running, PlanStatus::Idle);
    V2N::StartedPlan started;
    started.setPlanId(planId);
    m_notifier->notifyV2(started);
}

void Engine::onRunProgress(const QUuid& planId, int subtype, const RunProgress& progress)
{
    const ProgressReport report(planId, subtype, progress);
    m_notifier->notify(Format::Worker::ReportProgress::Type, report.reportProgress());
    m_notifier->notify(Format::Worker::ReportProgress2::Type, report.reportProgress2());
    m_notifier->notifyV2(report.planProgress());
}

void Engine::onRunFinished(const QUuid& planId, int, int planResult, const StoredRestorePoint& point, bool newBunch,
                           bool newGeneration)
{
    Q_UNUSED(planResult)
    notifyStateChange(planId, PlanStatus::Idle, PlanStatus::Running);
    V2N::StoppedPlan stopped;
    stopped.setPlanId(planId);
    m_notifier->notifyV2(stopped);
    if (point.rowId == 0)
        return;
    // The account holds more data now: the storage tables reload its row.
    m_notifier->notify(Format::Storage::UpdateConnections::Type, {});
    if (newBunch) {
        V2N::AddedNewBunch bunch;
        bunch.setConnectionId(point.connectionId);
        bunch.setBunchId(point.bunchId);
        m_notifier->notifyV2(bunch);
    }
    if (newGeneration) {
        V2N::AddedNewGeneration generation;
        generation.setConnectionId(point.connectionId);
        generation.setBunchId(point.bunchId);
        generation.setGenerationId(point.generationId);
        m_notifier->notifyV2(generation);
    }
    V2N::AddedNewRestorePoint added;
    added.setConnectionId(point.connectionId);
    added.setBunchId(point.bunchId);
    added.setGenerationId(point.generationId);
    added.setSequenceNumber(point.sequenceNumber);
    m_notifier->notifyV2(added);
}

void Engine::onDue(const QUuid& planId, bool forceFull)
{
    const Outcome outcome = startPlan(planId, forceFull);
    if (!outcome.ok) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning()
            << QStringLiteral("Scheduled run of plan %1 did not start: %2").arg(planId.toString(), outcome.error);
    }
}

} // namespace NVB::Engine
