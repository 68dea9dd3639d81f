#include "enginestore.h"

#include "restorepointremoval.h"

namespace NVB::Engine {

EngineStore::EngineStore() = default;

EngineStore::~EngineStore()
{
    close();
}

bool EngineStore::open(const QString& filePath)
{
    return m_db.open(filePath);
}

void EngineStore::close()
{
    m_db.close();
}

bool EngineStore::savePlan(const StoredPlan& plan)
{
    return m_plans.savePlan(plan);
}

bool EngineStore::removePlan(const QUuid& id)
{
    return m_plans.removePlan(id);
}

std::optional<StoredPlan> EngineStore::plan(const QUuid& id)
{
    return m_plans.plan(id);
}

QList<StoredPlan> EngineStore::plans()
{
    return m_plans.plans();
}

bool EngineStore::setPlanStatus(const QUuid& id, int status)
{
    return m_plans.setPlanStatus(id, status);
}

bool EngineStore::setLastScheduled(const QUuid& id, const QDateTime& utc)
{
    return m_plans.setLastScheduled(id, utc);
}

bool EngineStore::saveAccount(const StoredAccount& account)
{
    return m_accounts.saveAccount(account);
}

bool EngineStore::removeAccount(const QUuid& id)
{
    return m_accounts.removeAccount(id);
}

std::optional<StoredAccount> EngineStore::account(const QUuid& id)
{
    return m_accounts.account(id);
}

QList<StoredAccount> EngineStore::accounts()
{
    return m_accounts.accounts();
}

QList<QUuid> EngineStore::plansUsingAccount(const QUuid& accountId)
{
    return m_plans.plansUsingAccount(accountId);
}

std::optional<qint64> EngineStore::beginRun(const RunRecord& run)
{
    return m_runs.beginRun(run);
}

bool EngineStore::finishRun(const RunRecord& run, const QList<RunFileRecord>& files, const StoredPlan& summary,
    const StoredBunch* bunch, const StoredRestorePoint* point, const QList<StoredContent>& content, qint64* pointRowId)
{
    return m_runs.finishRun(run, files, summary, bunch, point, content, pointRowId);
}

int EngineStore::closeInterruptedRuns(int runningResult, int interruptedResult, int idleStatus)
{
    return m_runs.closeInterruptedRuns(runningResult, interruptedResult, idleStatus);
}

QList<RunRecord> EngineStore::runs(const HistoryQuery& query)
{
    return m_runs.runs(query);
}

QList<RunFileRecord> EngineStore::runFiles(const HistoryQuery& query)
{
    return m_runs.runFiles(query);
}

QList<StoredBunch> EngineStore::bunches(const QUuid& connectionId)
{
    return m_repository.bunches(connectionId);
}

std::optional<StoredBunch> EngineStore::bunch(const QUuid& connectionId, const QUuid& bunchId)
{
    return m_repository.bunch(connectionId, bunchId);
}

QList<StoredGeneration> EngineStore::generations(const QUuid& connectionId, const QUuid& bunchId)
{
    return m_repository.generations(connectionId, bunchId);
}

std::optional<StoredGeneration> EngineStore::generation(const QUuid& generationId)
{
    return m_repository.generation(generationId);
}

QList<StoredRestorePoint> EngineStore::restorePoints(
    const QUuid& connectionId, const QUuid& bunchId, const QUuid& generationId)
{
    return m_repository.restorePoints(connectionId, bunchId, generationId);
}

std::optional<StoredRestorePoint> EngineStore::latestRestorePoint(const QUuid& connectionId, const QUuid& bunchId)
{
    return m_repository.latestRestorePoint(connectionId, bunchId);
}

std::optional<StoredRestorePoint> EngineStore::restorePointAt(
    const QUuid& connectionId, const QUuid& bunchId, const QDateTime& startUtc)
{
    return m_repository.restorePointAt(connectionId, bunchId, startUtc);
}

QList<StoredContent> EngineStore::content(qint64 restorePointRowId)
{
    return m_repository.content(restorePointRowId);
}

QList<StoredContent> EngineStore::contentChildren(
    qint64 restorePointRowId, const QString& parent, int offset, int limit)
{
    return m_repository.contentChildren(restorePointRowId, parent, offset, limit);
}

bool EngineStore::removeBunch(const QUuid& connectionId, const QUuid& bunchId)
{
    return RestorePointRemoval(m_db).removeBunch(connectionId, bunchId);
}

bool EngineStore::removeGeneration(const QUuid& generationId)
{
    return RestorePointRemoval(m_db).removeGeneration(generationId);
}

} // namespace NVB::Engine
