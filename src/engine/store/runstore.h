#pragma once

#include <functional>
#include <optional>

#include <QList>
#include <QSqlQuery>

#include "contentchanges.h"
#include "historyquery.h"
#include "runfilerecord.h"
#include "runrecord.h"
#include "storedbunch.h"
#include "storedcontent.h"
#include "storedplan.h"
#include "storedrestorepoint.h"

namespace NVB::Engine {

class StoreDatabase;

// The history: `runs` and `run_files`. A run's end also writes its plan's
// summary and, for a backup that made one, its restore point, so finishing a
// run reaches into the plan and repository families in the same transaction.
class RunStore
{
public:
    explicit RunStore(StoreDatabase& database);

    // Writes a row in the "running" state so that a run the engine did not
    // live to finish is found and closed at the next start.
    std::optional<qint64> beginRun(const RunRecord& run);
    // Closes the run, stores its files, updates the plan's summary and, when
    // given, records the restore point with its content: all or nothing. A
    // run with a restore point commits durably. *pointRowId receives the
    // new restore point's row.
    bool finishRun(const RunRecord& run, const QList<RunFileRecord>& files, const StoredPlan& summary,
        const StoredBunch* bunch, const StoredRestorePoint* point, const QList<StoredContent>& content,
        qint64* pointRowId = nullptr);
    // The same with the point told as its changes since the latest point of
    // its generation.
    bool finishRun(const RunRecord& run, const QList<RunFileRecord>& files, const StoredPlan& summary,
        const StoredBunch* bunch, const StoredRestorePoint* point, const ContentChanges& changes,
        qint64* pointRowId = nullptr);
    // Adds lines to a finished run's history (what its retention removed).
    bool addRunFiles(qint64 runId, const QList<RunFileRecord>& files);
    // Marks runs left "running" by a previous engine as interrupted, and
    // every plan idle; answers how many runs there were.
    int closeInterruptedRuns(int runningResult, int interruptedResult, int idleStatus);
    QList<RunRecord> runs(const HistoryQuery& query);
    QList<RunFileRecord> runFiles(const HistoryQuery& query);

private:
    bool insertFiles(qint64 runId, const QList<RunFileRecord>& files);
    bool finishRun(const RunRecord& run, const QList<RunFileRecord>& files, const StoredPlan& summary, bool withPoint,
        const std::function<qint64()>& insertPoint, qint64* pointRowId);
    // One history page: `select` plus the query's filter, executed; an
    // inactive query (the error recorded) when it could not run.
    QSqlQuery historyPage(
        const QString& select, const HistoryQuery& query, const char* timeColumn, const char* textColumn);

    StoreDatabase& m_db;
};

} // namespace NVB::Engine
