#pragma once

#include <functional>
#include <optional>

#include <QList>
#include <QString>
#include <QUuid>

#include "accountstore.h"
#include "historyquery.h"
#include "planstore.h"
#include "repositorystore.h"
#include "runfilerecord.h"
#include "runrecord.h"
#include "runstore.h"
#include "storedaccount.h"
#include "storedatabase.h"
#include "storedbunch.h"
#include "storedcontent.h"
#include "storedgeneration.h"
#include "storedplan.h"
#include "storedrestorepoint.h"

namespace NVB::Engine {

// The engine's embedded store: SQLite in WAL mode, every change in one
// transaction, so that a crash loses at most the change in flight and never
// leaves half of one. One connection, used from the thread that opened it;
// the tables are kept by a class per family (plans(), accounts(), history(),
// repository()) and this class answers for all of them in one place.
//
// Every call that can fail answers false (or an empty optional) and leaves
// the reason in lastError().
class EngineStore
{
public:
    EngineStore();
    ~EngineStore();
    EngineStore(const EngineStore&) = delete;
    EngineStore& operator=(const EngineStore&) = delete;

    bool open(const QString& filePath);
    void close();
    QString lastError() const { return m_db.lastError(); }
    QString filePath() const { return m_db.filePath(); }

    StoreDatabase& database() { return m_db; }
    PlanStore& planStore() { return m_plans; }
    AccountStore& accountStore() { return m_accounts; }
    RunStore& runStore() { return m_runs; }
    RepositoryStore& repositoryStore() { return m_repository; }

    // Plans
    bool savePlan(const StoredPlan& plan);
    bool removePlan(const QUuid& id);
    std::optional<StoredPlan> plan(const QUuid& id);
    QList<StoredPlan> plans();
    bool setPlanStatus(const QUuid& id, int status);
    bool setLastScheduled(const QUuid& id, const QDateTime& utc);

    // Accounts
    bool saveAccount(const StoredAccount& account);
    bool removeAccount(const QUuid& id);
    std::optional<StoredAccount> account(const QUuid& id);
    QList<StoredAccount> accounts();
    // Plans whose storage is the account.
    QList<QUuid> plansUsingAccount(const QUuid& accountId);

    // Runs. beginRun writes a row in the "running" state so that a run the
    // engine did not live to finish is found and closed at the next start.
    std::optional<qint64> beginRun(const RunRecord& run);
    // Closes the run, stores its files, updates the plan's summary and, when
    // given, records the restore point with its content: all or nothing.
    bool finishRun(const RunRecord& run, const QList<RunFileRecord>& files, const StoredPlan& summary,
        const StoredBunch* bunch, const StoredRestorePoint* point, const QList<StoredContent>& content,
        qint64* pointRowId = nullptr);
    // Marks runs left "running" by a previous engine as interrupted, and
    // every plan idle; answers how many runs there were.
    int closeInterruptedRuns(int runningResult, int interruptedResult, int idleStatus);
    QList<RunRecord> runs(const HistoryQuery& query);
    QList<RunFileRecord> runFiles(const HistoryQuery& query);

    // Repository
    QList<StoredBunch> bunches(const QUuid& connectionId);
    std::optional<StoredBunch> bunch(const QUuid& connectionId, const QUuid& bunchId);
    QList<StoredGeneration> generations(const QUuid& connectionId, const QUuid& bunchId);
    std::optional<StoredGeneration> generation(const QUuid& generationId);
    QList<StoredRestorePoint> restorePoints(
        const QUuid& connectionId, const QUuid& bunchId, const QUuid& generationId = QUuid());
    std::optional<StoredRestorePoint> latestRestorePoint(const QUuid& connectionId, const QUuid& bunchId);
    // The restore point a restore asks for: the newest started at or before
    // `startUtc`, or with an invalid time the newest of all.
    std::optional<StoredRestorePoint> restorePointAt(
        const QUuid& connectionId, const QUuid& bunchId, const QDateTime& startUtc);
    QList<StoredContent> content(qint64 restorePointRowId);
    // The children of `parent` in a restore point, a page at a time.
    QList<StoredContent> contentChildren(qint64 restorePointRowId, const QString& parent, int offset, int limit);
    bool removeBunch(const QUuid& connectionId, const QUuid& bunchId);
    bool removeGeneration(const QUuid& generationId);

private:
    StoreDatabase m_db;
    PlanStore m_plans {m_db};
    AccountStore m_accounts {m_db};
    RunStore m_runs {m_db};
    RepositoryStore m_repository {m_db};
};

} // namespace NVB::Engine
