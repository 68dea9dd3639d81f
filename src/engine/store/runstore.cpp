#include "runstore.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include "planstore.h"
#include "repositorystore.h"
#include "storedatabase.h"
#include "storevalues.h"

namespace NVB::Engine {

using namespace StoreValues;

RunStore::RunStore(StoreDatabase& database)
    : m_db(database)
{ }

std::optional<qint64> RunStore::beginRun(const RunRecord& run)
{
    qint64 id = 0;
    const bool ok = m_db.transaction([&] {
        QSqlQuery q(m_db.database());
        q.prepare(
            QStringLiteral("INSERT INTO runs(plan_id, plan_name, operation, result, start_utc) VALUES(?,?,?,?,?)"));
        q.addBindValue(text(run.planId));
        q.addBindValue(str(run.planName));
        q.addBindValue(run.operation);
        q.addBindValue(run.result);
        q.addBindValue(stamp(run.startUtc));
        if (!q.exec())
            return m_db.fail(QStringLiteral("Cannot record the run: %1").arg(q.lastError().text()));
        id = q.lastInsertId().toLongLong();
        return true;
    });
    return ok ? std::optional<qint64>(id) : std::nullopt;
}

bool RunStore::finishRun(const RunRecord& run, const QList<RunFileRecord>& files, const StoredPlan& summary,
    const StoredBunch* bunch, const StoredRestorePoint* point, const QList<StoredContent>& content, qint64* pointRowId)
{
    return finishRun(
        run, files, summary, bunch && point,
        [&] { return RepositoryStore(m_db).insertRestorePoint(*bunch, *point, content); }, pointRowId);
}

bool RunStore::finishRun(const RunRecord& run, const QList<RunFileRecord>& files, const StoredPlan& summary,
    const StoredBunch* bunch, const StoredRestorePoint* point, const ContentChanges& changes, qint64* pointRowId)
{
    return finishRun(
        run, files, summary, bunch && point,
        [&] { return RepositoryStore(m_db).insertRestorePoint(*bunch, *point, changes); }, pointRowId);
}

bool RunStore::finishRun(const RunRecord& run, const QList<RunFileRecord>& files, const StoredPlan& summary,
    bool withPoint, const std::function<qint64()>& insertPoint, qint64* pointRowId)
{
    qint64 made = 0;
    const bool ok = m_db.transaction(
        [&] {
            QSqlDatabase db = m_db.database();
            QSqlQuery q(db);
            q.prepare(QStringLiteral(
                "UPDATE runs SET result=?, duration=?, size=?, file_count=?, error_message=? WHERE id=?"));
            for (const QVariant& value : {QVariant(run.result), QVariant(run.durationSeconds), QVariant(run.size),
                     QVariant(run.fileCount), str(run.errorMessage), QVariant(run.id)})
                q.addBindValue(value);
            if (!q.exec())
                return m_db.fail(QStringLiteral("Cannot close the run: %1").arg(q.lastError().text()));

            if (!insertFiles(run.id, files))
                return false;
            if (!PlanStore(m_db).writeSummary(summary))
                return false;
            if (withPoint) {
                made = insertPoint();
                if (made <= 0)
                    return false;
            }
            // Whatever the run staged is in its point now, or goes with a
            // run that made none.
            QSqlQuery staged(db);
            staged.prepare(QStringLiteral("DELETE FROM staged_contents WHERE run_id=?"));
            staged.addBindValue(run.id);
            return staged.exec()
                || m_db.fail(QStringLiteral("Cannot drop the run's staged entries: %1").arg(staged.lastError().text()));
        },
        withPoint);
    if (ok && pointRowId)
        *pointRowId = made;
    return ok;
}

bool RunStore::insertFiles(qint64 runId, const QList<RunFileRecord>& files)
{
    QSqlQuery f(m_db.database());
    f.prepare(QStringLiteral("INSERT INTO run_files(run_id, plan_id, plan_name, file, operation, size, "
                             "modified_utc, finish_utc, duration, message) VALUES(?,?,?,?,?,?,?,?,?,?)"));
    for (const RunFileRecord& file : files) {
        for (const QVariant& value : {QVariant(runId), QVariant(text(file.planId)), str(file.planName),
                 str(file.file), QVariant(file.operation), QVariant(file.size), stamp(file.modifiedUtc),
                 stamp(file.finishUtc), QVariant(file.durationMs), str(file.message)})
            f.addBindValue(value);
        if (!f.exec())
            return m_db.fail(QStringLiteral("Cannot record a file of the run: %1").arg(f.lastError().text()));
    }
    return true;
}

bool RunStore::addRunFiles(qint64 runId, const QList<RunFileRecord>& files)
{
    return files.isEmpty() || m_db.transaction([&] { return insertFiles(runId, files); });
}

int RunStore::closeInterruptedRuns(int runningResult, int interruptedResult, int idleStatus)
{
    int count = 0;
    m_db.transaction([&] {
        QSqlQuery q(m_db.database());
        q.prepare(QStringLiteral("UPDATE runs SET result=?, error_message=? WHERE result=?"));
        q.addBindValue(interruptedResult);
        q.addBindValue(QStringLiteral("The engine stopped during the run"));
        q.addBindValue(runningResult);
        if (!q.exec())
            return m_db.fail(q.lastError().text());
        count = q.numRowsAffected();
        // Entries of runs that never committed.
        if (!m_db.exec(QStringLiteral("DELETE FROM staged_contents")))
            return false;
        return PlanStore(m_db).setEveryStatus(idleStatus);
    });
    return count;
}

namespace {

// The WHERE and LIMIT of a history page; `timeColumn` and `textColumn` are
// what the period and the filter apply to.
QString historyFilter(const HistoryQuery& query, const char* timeColumn, const char* textColumn, QVariantList* values)
{
    QString sql = QStringLiteral(" WHERE 1=1");
    if (!query.planId.isNull()) {
        sql += QStringLiteral(" AND plan_id=?");
        *values << text(query.planId);
    }
    const QDateTime since = query.since(QDateTime::currentDateTimeUtc());
    if (since.isValid()) {
        // Ids grow with time: the id of the period's first row, one seek in
        // the time index, ends the backward walk there instead of at the table's
        // first row when the period holds less than a page.
        const QString table = QLatin1String(timeColumn) == QLatin1String("start_utc") ? QStringLiteral("runs")
                                                                                      : QStringLiteral("run_files");
        // The unary plus keeps the planner off the time index for the page
        // itself: sorting a whole period by id costs more than the walk.
        sql += QStringLiteral(" AND +%1>=? AND id>=coalesce((SELECT id FROM %2 WHERE %1>=? ORDER BY %1 LIMIT 1), "
                              "9223372036854775807)")
                   .arg(QLatin1String(timeColumn), table);
        *values << stamp(since) << stamp(since);
    }
    if (!query.filter.isEmpty()) {
        sql += QStringLiteral(" AND instr(lower(%1), lower(?))>0").arg(QLatin1String(textColumn));
        *values << query.filter;
    }
    if (query.fileOperation > 0) {
        sql += QStringLiteral(" AND operation=?");
        *values << query.fileOperation;
    }
    if (query.lastId > 0) {
        sql += QStringLiteral(" AND id<?");
        *values << query.lastId;
    }
    sql += QStringLiteral(" ORDER BY id DESC LIMIT ?");
    *values << query.limit;
    return sql;
}

} // namespace

QSqlQuery RunStore::historyPage(
    const QString& select, const HistoryQuery& query, const char* timeColumn, const char* textColumn)
{
    QVariantList values;
    QSqlQuery q(m_db.database());
    q.prepare(select + historyFilter(query, timeColumn, textColumn, &values));
    for (const QVariant& value : qAsConst(values))
        q.addBindValue(value);
    if (!q.exec())
        m_db.fail(q.lastError().text());
    return q;
}

QList<RunRecord> RunStore::runs(const HistoryQuery& query)
{
    QList<RunRecord> result;
    QSqlQuery q = historyPage(QStringLiteral("SELECT id, plan_id, plan_name, operation, result, start_utc, duration, "
                                             "size, file_count, error_message FROM runs"),
        query, "start_utc", "plan_name");
    while (q.isActive() && q.next()) {
        RunRecord r;
        r.id = q.value(0).toLongLong();
        r.planId = QUuid(q.value(1).toString());
        r.planName = q.value(2).toString();
        r.operation = q.value(3).toInt();
        r.result = q.value(4).toInt();
        r.startUtc = readStamp(q.value(5));
        r.durationSeconds = q.value(6).toLongLong();
        r.size = q.value(7).toLongLong();
        r.fileCount = q.value(8).toLongLong();
        r.errorMessage = q.value(9).toString();
        result.append(r);
    }
    return result;
}

QList<RunFileRecord> RunStore::runFiles(const HistoryQuery& query)
{
    QList<RunFileRecord> result;
    QSqlQuery q = historyPage(QStringLiteral("SELECT id, run_id, plan_id, plan_name, file, operation, size, "
                                             "modified_utc, finish_utc, duration, message FROM run_files"),
        query, "finish_utc", "file");
    while (q.isActive() && q.next()) {
        RunFileRecord f;
        f.id = q.value(0).toLongLong();
        f.runId = q.value(1).toLongLong();
        f.planId = QUuid(q.value(2).toString());
        f.planName = q.value(3).toString();
        f.file = q.value(4).toString();
        f.operation = q.value(5).toInt();
        f.size = q.value(6).toLongLong();
        f.modifiedUtc = readStamp(q.value(7));
        f.finishUtc = readStamp(q.value(8));
        f.durationMs = q.value(9).toLongLong();
        f.message = q.value(10).toString();
        result.append(f);
    }
    return result;
}

} // namespace NVB::Engine
