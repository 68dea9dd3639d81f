#pragma once

#include <functional>
#include <optional>

#include <QList>
#include <QSqlDatabase>
#include <QString>
#include <QUuid>

#include "historyquery.h"
#include "runfilerecord.h"
#include "runrecord.h"
#include "storedaccount.h"
#include "storedbunch.h"
#include "storedcontent.h"
#include "storedgeneration.h"
#include "storedplan.h"
#include "storedrestorepoint.h"

namespace NVB::Engine {

// The engine's embedded store: SQLite in WAL mode, every change in one
// transaction, so that a crash loses at most the change in flight and never
// leaves half of one. Used from the engine's main thread only.
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
    QString lastError() const { return m_lastError; }
    QString filePath() const { return m_filePath; }

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
                   const StoredBunch* bunch, const StoredRestorePoint* point, const QList<StoredContent>& content);
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
    QList<StoredRestorePoint> restorePoints(const QUuid& connectionId, const QUuid& bunchId,
                                            const QUuid& generationId = QUuid());
    std::optional<StoredRestorePoint> latestRestorePoint(const QUuid& connectionId, const QUuid& bunchId);
    // The restore point a restore asks for: the newest started at or before
    // `startUtc`, or with an invalid time the newest of all.
    std::optional<StoredRestorePoint> restorePointAt(const QUuid& connectionId, const QUuid& bunchId,
                                                     const QDateTime& startUtc);
    QList<StoredContent> content(qint64 restorePointRowId);
    // The children of `parent` in a restore point, a page at a time.
    QList<StoredContent> contentChildren(qint64 restorePointRowId, const QString& parent, int offset, int limit);
    bool removeBunch(const QUuid& connectionId, const QUuid& bunchId);
    bool removeGeneration(const QUuid& generationId);

private:
    bool migrate();
    bool exec(const QString& statement);
    // Deletes the row of `table` with the id; `missing` (with %1 for the id)
    // is the error when there is none.
    bool deleteById(const QString& table, const QUuid& id, const QString& what, const QString& missing);
    bool transaction(const std::function<bool()>& work);
    bool fail(const QString& message);

    QString m_connectionName;
    QString m_filePath;
    QString m_lastError;
};

} // namespace NVB::Engine
