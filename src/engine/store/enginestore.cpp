#include "enginestore.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include "certificatepinstore.h"

namespace NVB::Engine {

namespace {

constexpr int SchemaVersion = 1;

QString text(const QUuid& id)
{
    return id.isNull() ? QString() : id.toString();
}

// Qt binds a null QString as SQL NULL; the columns hold empty texts instead.
QVariant str(const QString& value)
{
    return QVariant(value.isNull() ? QStringLiteral("") : value);
}

QVariant stamp(const QDateTime& utc)
{
    return utc.isValid() ? QVariant(utc.toUTC().toString(Qt::ISODateWithMs)) : QVariant(QVariant::String);
}

QDateTime readStamp(const QVariant& value)
{
    QDateTime parsed = QDateTime::fromString(value.toString(), Qt::ISODateWithMs);
    if (parsed.isValid())
        parsed = parsed.toUTC();
    return parsed;
}

const char* const Schema[] = {
    R"(CREATE TABLE plans(
        id TEXT PRIMARY KEY, profile TEXT NOT NULL DEFAULT '', xml TEXT NOT NULL, name TEXT NOT NULL,
        type INTEGER NOT NULL, subtype INTEGER NOT NULL, storage_id TEXT,
        status INTEGER NOT NULL DEFAULT 0, last_result INTEGER NOT NULL DEFAULT -1, last_run_utc TEXT,
        last_duration INTEGER NOT NULL DEFAULT 0, last_file_count INTEGER NOT NULL DEFAULT 0,
        last_file_size INTEGER NOT NULL DEFAULT 0, last_uploaded_count INTEGER NOT NULL DEFAULT 0,
        last_uploaded_size INTEGER NOT NULL DEFAULT 0, last_failed_count INTEGER NOT NULL DEFAULT 0,
        last_message TEXT NOT NULL DEFAULT '', last_scheduled_utc TEXT))",
    R"(CREATE TABLE accounts(
        id TEXT PRIMARY KEY, profile TEXT NOT NULL DEFAULT '', display_name TEXT NOT NULL,
        type INTEGER NOT NULL, prefix TEXT NOT NULL DEFAULT '', params TEXT NOT NULL))",
    R"(CREATE TABLE runs(
        id INTEGER PRIMARY KEY AUTOINCREMENT, plan_id TEXT NOT NULL, plan_name TEXT NOT NULL DEFAULT '',
        operation INTEGER NOT NULL, result INTEGER NOT NULL, start_utc TEXT NOT NULL,
        duration INTEGER NOT NULL DEFAULT 0, size INTEGER NOT NULL DEFAULT 0,
        file_count INTEGER NOT NULL DEFAULT 0, error_message TEXT NOT NULL DEFAULT ''))",
    "CREATE INDEX runs_by_plan ON runs(plan_id, id)",
    R"(CREATE TABLE run_files(
        id INTEGER PRIMARY KEY AUTOINCREMENT, run_id INTEGER NOT NULL REFERENCES runs(id) ON DELETE CASCADE,
        plan_id TEXT NOT NULL, plan_name TEXT NOT NULL DEFAULT '', file TEXT NOT NULL,
        operation INTEGER NOT NULL, size INTEGER NOT NULL DEFAULT 0, modified_utc TEXT, finish_utc TEXT,
        duration INTEGER NOT NULL DEFAULT 0, message TEXT NOT NULL DEFAULT ''))",
    "CREATE INDEX run_files_by_plan ON run_files(plan_id, id)",
    "CREATE INDEX run_files_by_run ON run_files(run_id)",
    R"(CREATE TABLE bunches(
        connection_id TEXT NOT NULL, id TEXT NOT NULL, display_name TEXT NOT NULL DEFAULT '',
        type INTEGER NOT NULL DEFAULT 0, plan_xml TEXT NOT NULL DEFAULT '', PRIMARY KEY(connection_id, id)))",
    R"(CREATE TABLE generations(
        id TEXT PRIMARY KEY, bunch_id TEXT NOT NULL, connection_id TEXT NOT NULL,
        status INTEGER NOT NULL DEFAULT 0, broken_type INTEGER NOT NULL DEFAULT 0,
        deep_sync INTEGER NOT NULL DEFAULT 0, encrypted INTEGER NOT NULL DEFAULT 0,
        hint TEXT NOT NULL DEFAULT '', storage_size INTEGER NOT NULL DEFAULT 0))",
    R"(CREATE TABLE restore_points(
        id INTEGER PRIMARY KEY AUTOINCREMENT, connection_id TEXT NOT NULL, bunch_id TEXT NOT NULL,
        generation_id TEXT NOT NULL REFERENCES generations(id) ON DELETE CASCADE, sequence INTEGER NOT NULL,
        start_utc TEXT NOT NULL, backup_type INTEGER NOT NULL, type INTEGER NOT NULL, status INTEGER NOT NULL,
        deep_sync INTEGER NOT NULL DEFAULT 0, encrypted INTEGER NOT NULL DEFAULT 0,
        size_on_storage INTEGER NOT NULL DEFAULT 0, UNIQUE(generation_id, sequence)))",
    "CREATE INDEX restore_points_by_bunch ON restore_points(connection_id, bunch_id, start_utc)",
    R"(CREATE TABLE contents(
        restore_point INTEGER NOT NULL REFERENCES restore_points(id) ON DELETE CASCADE,
        path TEXT NOT NULL, parent TEXT NOT NULL, name TEXT NOT NULL, type INTEGER NOT NULL,
        modified_utc TEXT, size INTEGER NOT NULL DEFAULT 0, deleted INTEGER NOT NULL DEFAULT 0,
        object TEXT NOT NULL DEFAULT '', PRIMARY KEY(restore_point, path)) WITHOUT ROWID)",
    "CREATE INDEX contents_by_parent ON contents(restore_point, parent, name)",
};

StoredPlan readPlan(const QSqlQuery& q)
{
    StoredPlan p;
    p.id = QUuid(q.value(0).toString());
    p.profile = q.value(1).toString();
    p.xml = q.value(2).toString();
    p.name = q.value(3).toString();
    p.type = q.value(4).toInt();
    p.subtype = q.value(5).toInt();
    p.storageId = QUuid(q.value(6).toString());
    p.status = q.value(7).toInt();
    p.lastResult = q.value(8).toInt();
    p.lastRunUtc = readStamp(q.value(9));
    p.lastDuration = q.value(10).toLongLong();
    p.lastFileCount = q.value(11).toLongLong();
    p.lastFileSize = q.value(12).toLongLong();
    p.lastUploadedCount = q.value(13).toLongLong();
    p.lastUploadedSize = q.value(14).toLongLong();
    p.lastFailedCount = q.value(15).toLongLong();
    p.lastMessage = q.value(16).toString();
    p.lastScheduledUtc = readStamp(q.value(17));
    return p;
}

const QString PlanColumns = QStringLiteral(
    "id, profile, xml, name, type, subtype, storage_id, status, last_result, last_run_utc, last_duration, "
    "last_file_count, last_file_size, last_uploaded_count, last_uploaded_size, last_failed_count, last_message, "
    "last_scheduled_utc");

StoredAccount readAccount(const QSqlQuery& q)
{
    StoredAccount a;
    a.id = QUuid(q.value(0).toString());
    a.profile = q.value(1).toString();
    a.displayName = q.value(2).toString();
    a.type = q.value(3).toInt();
    a.prefix = q.value(4).toString();
    a.params = QJsonDocument::fromJson(q.value(5).toByteArray()).object();
    return a;
}

StoredRestorePoint readRestorePoint(const QSqlQuery& q)
{
    StoredRestorePoint r;
    r.rowId = q.value(0).toLongLong();
    r.connectionId = QUuid(q.value(1).toString());
    r.bunchId = QUuid(q.value(2).toString());
    r.generationId = QUuid(q.value(3).toString());
    r.sequenceNumber = q.value(4).toInt();
    r.startUtc = readStamp(q.value(5));
    r.backupType = q.value(6).toInt();
    r.type = q.value(7).toInt();
    r.status = q.value(8).toInt();
    r.deepSync = q.value(9).toInt();
    r.encrypted = q.value(10).toBool();
    r.sizeOnStorage = q.value(11).toLongLong();
    return r;
}

const QString RestorePointColumns = QStringLiteral(
    "id, connection_id, bunch_id, generation_id, sequence, start_utc, backup_type, type, status, deep_sync, "
    "encrypted, size_on_storage");

StoredContent readContent(const QSqlQuery& q)
{
    StoredContent c;
    c.path = q.value(0).toString();
    c.type = q.value(1).toInt();
    c.modifiedUtc = readStamp(q.value(2));
    c.size = q.value(3).toLongLong();
    c.deleted = q.value(4).toBool();
    c.object = q.value(5).toString();
    return c;
}

} // namespace

EngineStore::EngineStore()
    : m_connectionName(QStringLiteral("nvbengine-%1").arg(QUuid::createUuid().toString(QUuid::Id128)))
{
}

EngineStore::~EngineStore()
{
    close();
}

bool EngineStore::fail(const QString& message)
{
    m_lastError = message;
    return false;
}

bool EngineStore::open(const QString& filePath)
{
    close();
    m_filePath = filePath;
    QDir().mkpath(QFileInfo(filePath).absolutePath());
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connectionName);
    db.setDatabaseName(filePath);
    db.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=5000"));
    if (!db.open())
        return fail(QStringLiteral("Cannot open the store %1: %2").arg(filePath, db.lastError().text()));
    if (!exec(QStringLiteral("PRAGMA journal_mode=WAL")) || !exec(QStringLiteral("PRAGMA foreign_keys=ON"))
        || !exec(QStringLiteral("PRAGMA synchronous=NORMAL")))
        return false;
    return migrate();
}

void EngineStore::close()
{
    if (!QSqlDatabase::contains(m_connectionName))
        return;
    {
        QSqlDatabase db = QSqlDatabase::database(m_connectionName, false);
        db.close();
    }
    QSqlDatabase::removeDatabase(m_connectionName);
}

bool EngineStore::exec(const QString& statement)
{
    QSqlQuery query(QSqlDatabase::database(m_connectionName, false));
    if (!query.exec(statement))
        return fail(QStringLiteral("%1: %2").arg(statement.left(60), query.lastError().text()));
    return true;
}

bool EngineStore::transaction(const std::function<bool()>& work)
{
    QSqlDatabase db = QSqlDatabase::database(m_connectionName, false);
    if (!db.isOpen())
        return fail(QStringLiteral("The store is not open"));
    if (!db.transaction())
        return fail(QStringLiteral("Cannot begin a transaction: %1").arg(db.lastError().text()));
    if (!work()) {
        db.rollback();
        return false;
    }
    if (!db.commit()) {
        const QString reason = db.lastError().text();
        db.rollback();
        return fail(QStringLiteral("Cannot commit: %1").arg(reason));
    }
    return true;
}

bool EngineStore::migrate()
{
    QSqlQuery version(QSqlDatabase::database(m_connectionName, false));
    if (!version.exec(QStringLiteral("PRAGMA user_version")) || !version.next())
        return fail(QStringLiteral("Cannot read the store's version: %1").arg(version.lastError().text()));
    const int current = version.value(0).toInt();
    if (!CertificatePinStore::createTable(QSqlDatabase::database(m_connectionName, false), &m_lastError))
        return false;
    if (current == SchemaVersion)
        return true;
    if (current > SchemaVersion)
        return fail(QStringLiteral("The store %1 was written by a newer engine (version %2)").arg(m_filePath).arg(current));
    return transaction([this] {
        for (const char* statement : Schema) {
            if (!exec(QString::fromLatin1(statement)))
                return false;
        }
        return exec(QStringLiteral("PRAGMA user_version=%1").arg(SchemaVersion));
    });
}

// ---- plans ---------------------------------------------------------------

bool EngineStore::savePlan(const StoredPlan& p)
{
    return transaction([&] {
        QSqlQuery q(QSqlDatabase::database(m_connectionName, false));
        q.prepare(QStringLiteral("INSERT INTO plans(%1) VALUES(?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?) "
                                 "ON CONFLICT(id) DO UPDATE SET profile=excluded.profile, xml=excluded.xml, "
                                 "name=excluded.name, type=excluded.type, subtype=excluded.subtype, "
                                 "storage_id=excluded.storage_id, status=excluded.status, "
                                 "last_result=excluded.last_result, last_run_utc=excluded.last_run_utc, "
                                 "last_duration=excluded.last_duration, last_file_count=excluded.last_file_count, "
                                 "last_file_size=excluded.last_file_size, "
                                 "last_uploaded_count=excluded.last_uploaded_count, "
                                 "last_uploaded_size=excluded.last_uploaded_size, "
                                 "last_failed_count=excluded.last_failed_count, last_message=excluded.last_message, "
                                 "last_scheduled_utc=excluded.last_scheduled_utc")
                      .arg(PlanColumns));
        for (const QVariant& value :
             {QVariant(text(p.id)), str(p.profile), str(p.xml), str(p.name), QVariant(p.type),
              QVariant(p.subtype), QVariant(text(p.storageId)), QVariant(p.status), QVariant(p.lastResult),
              stamp(p.lastRunUtc), QVariant(p.lastDuration), QVariant(p.lastFileCount), QVariant(p.lastFileSize),
              QVariant(p.lastUploadedCount), QVariant(p.lastUploadedSize), QVariant(p.lastFailedCount),
              str(p.lastMessage), stamp(p.lastScheduledUtc)})
            q.addBindValue(value);
        return q.exec() || fail(QStringLiteral("Cannot save the plan: %1").arg(q.lastError().text()));
    });
}

bool EngineStore::removePlan(const QUuid& id)
{
    return deleteById(QStringLiteral("plans"), id, QStringLiteral("plan"), QStringLiteral("No plan with the id %1"));
}

std::optional<StoredPlan> EngineStore::plan(const QUuid& id)
{
    QSqlQuery q(QSqlDatabase::database(m_connectionName, false));
    q.prepare(QStringLiteral("SELECT %1 FROM plans WHERE id=?").arg(PlanColumns));
    q.addBindValue(text(id));
    if (!q.exec()) {
        fail(q.lastError().text());
        return std::nullopt;
    }
    if (!q.next())
        return std::nullopt;
    return readPlan(q);
}

QList<StoredPlan> EngineStore::plans()
{
    QList<StoredPlan> result;
    QSqlQuery q(QSqlDatabase::database(m_connectionName, false));
    if (!q.exec(QStringLiteral("SELECT %1 FROM plans ORDER BY name, id").arg(PlanColumns))) {
        fail(q.lastError().text());
        return result;
    }
    while (q.next())
        result.append(readPlan(q));
    return result;
}

bool EngineStore::setPlanStatus(const QUuid& id, int status)
{
    return transaction([&] {
        QSqlQuery q(QSqlDatabase::database(m_connectionName, false));
        q.prepare(QStringLiteral("UPDATE plans SET status=? WHERE id=?"));
        q.addBindValue(status);
        q.addBindValue(text(id));
        return q.exec() || fail(q.lastError().text());
    });
}

bool EngineStore::setLastScheduled(const QUuid& id, const QDateTime& utc)
{
    return transaction([&] {
        QSqlQuery q(QSqlDatabase::database(m_connectionName, false));
        q.prepare(QStringLiteral("UPDATE plans SET last_scheduled_utc=? WHERE id=?"));
        q.addBindValue(stamp(utc));
        q.addBindValue(text(id));
        return q.exec() || fail(q.lastError().text());
    });
}

// ---- accounts ------------------------------------------------------------

bool EngineStore::saveAccount(const StoredAccount& a)
{
    return transaction([&] {
        QSqlQuery q(QSqlDatabase::database(m_connectionName, false));
        q.prepare(QStringLiteral("INSERT OR REPLACE INTO accounts(id, profile, display_name, type, prefix, params) "
                                 "VALUES(?,?,?,?,?,?)"));
        q.addBindValue(text(a.id));
        q.addBindValue(str(a.profile));
        q.addBindValue(str(a.displayName));
        q.addBindValue(a.type);
        q.addBindValue(str(a.prefix));
        q.addBindValue(QString::fromUtf8(QJsonDocument(a.params).toJson(QJsonDocument::Compact)));
        return q.exec() || fail(QStringLiteral("Cannot save the account: %1").arg(q.lastError().text()));
    });
}

bool EngineStore::removeAccount(const QUuid& id)
{
    return deleteById(QStringLiteral("accounts"), id, QStringLiteral("account"),
                      QStringLiteral("No storage account with the id %1"));
}

std::optional<StoredAccount> EngineStore::account(const QUuid& id)
{
    QSqlQuery q(QSqlDatabase::database(m_connectionName, false));
    q.prepare(QStringLiteral("SELECT id, profile, display_name, type, prefix, params FROM accounts WHERE id=?"));
    q.addBindValue(text(id));
    if (!q.exec() || !q.next())
        return std::nullopt;
    return readAccount(q);
}

QList<StoredAccount> EngineStore::accounts()
{
    QList<StoredAccount> result;
    QSqlQuery q(QSqlDatabase::database(m_connectionName, false));
    if (!q.exec(QStringLiteral("SELECT id, profile, display_name, type, prefix, params FROM accounts "
                               "ORDER BY display_name, id")))
        return result;
    while (q.next())
        result.append(readAccount(q));
    return result;
}

QList<QUuid> EngineStore::plansUsingAccount(const QUuid& accountId)
{
    QList<QUuid> result;
    QSqlQuery q(QSqlDatabase::database(m_connectionName, false));
    q.prepare(QStringLiteral("SELECT id FROM plans WHERE storage_id=?"));
    q.addBindValue(text(accountId));
    if (!q.exec())
        return result;
    while (q.next())
        result.append(QUuid(q.value(0).toString()));
    return result;
}

// ---- runs ----------------------------------------------------------------

std::optional<qint64> EngineStore::beginRun(const RunRecord& run)
{
    qint64 id = 0;
    const bool ok = transaction([&] {
        QSqlQuery q(QSqlDatabase::database(m_connectionName, false));
        q.prepare(QStringLiteral("INSERT INTO runs(plan_id, plan_name, operation, result, start_utc) VALUES(?,?,?,?,?)"));
        q.addBindValue(text(run.planId));
        q.addBindValue(str(run.planName));
        q.addBindValue(run.operation);
        q.addBindValue(run.result);
        q.addBindValue(stamp(run.startUtc));
        if (!q.exec())
            return fail(QStringLiteral("Cannot record the run: %1").arg(q.lastError().text()));
        id = q.lastInsertId().toLongLong();
        return true;
    });
    return ok ? std::optional<qint64>(id) : std::nullopt;
}

bool EngineStore::finishRun(const RunRecord& run, const QList<RunFileRecord>& files, const StoredPlan& summary,
                            const StoredBunch* bunch, const StoredRestorePoint* point,
                            const QList<StoredContent>& content)
{
    return transaction([&] {
        QSqlDatabase db = QSqlDatabase::database(m_connectionName, false);
        QSqlQuery q(db);
        q.prepare(QStringLiteral("UPDATE runs SET result=?, duration=?, size=?, file_count=?, error_message=? WHERE id=?"));
        for (const QVariant& value : {QVariant(run.result), QVariant(run.durationSeconds), QVariant(run.size),
                                      QVariant(run.fileCount), str(run.errorMessage), QVariant(run.id)})
            q.addBindValue(value);
        if (!q.exec())
            return fail(QStringLiteral("Cannot close the run: %1").arg(q.lastError().text()));

        QSqlQuery f(db);
        f.prepare(QStringLiteral("INSERT INTO run_files(run_id, plan_id, plan_name, file, operation, size, "
                                 "modified_utc, finish_utc, duration, message) VALUES(?,?,?,?,?,?,?,?,?,?)"));
        for (const RunFileRecord& file : files) {
            for (const QVariant& value :
                 {QVariant(run.id), QVariant(text(file.planId)), str(file.planName), str(file.file),
                  QVariant(file.operation), QVariant(file.size), stamp(file.modifiedUtc), stamp(file.finishUtc),
                  QVariant(file.durationMs), str(file.message)})
                f.addBindValue(value);
            if (!f.exec())
                return fail(QStringLiteral("Cannot record a file of the run: %1").arg(f.lastError().text()));
        }

        QSqlQuery s(db);
        s.prepare(QStringLiteral("UPDATE plans SET status=?, last_result=?, last_run_utc=?, last_duration=?, "
                                 "last_file_count=?, last_file_size=?, last_uploaded_count=?, last_uploaded_size=?, "
                                 "last_failed_count=?, last_message=? WHERE id=?"));
        for (const QVariant& value :
             {QVariant(summary.status), QVariant(summary.lastResult), stamp(summary.lastRunUtc),
              QVariant(summary.lastDuration), QVariant(summary.lastFileCount), QVariant(summary.lastFileSize),
              QVariant(summary.lastUploadedCount), QVariant(summary.lastUploadedSize),
              QVariant(summary.lastFailedCount), str(summary.lastMessage), QVariant(text(summary.id))})
            s.addBindValue(value);
        if (!s.exec())
            return fail(QStringLiteral("Cannot update the plan's summary: %1").arg(s.lastError().text()));

        if (!bunch || !point)
            return true;

        QSqlQuery b(db);
        b.prepare(QStringLiteral("INSERT INTO bunches(connection_id, id, display_name, type, plan_xml) VALUES(?,?,?,?,?) "
                                 "ON CONFLICT(connection_id, id) DO UPDATE SET display_name=excluded.display_name, "
                                 "type=excluded.type, plan_xml=excluded.plan_xml"));
        for (const QVariant& value : {QVariant(text(bunch->connectionId)), QVariant(text(bunch->id)),
                                      str(bunch->displayName), QVariant(bunch->type), str(bunch->planXml)})
            b.addBindValue(value);
        if (!b.exec())
            return fail(QStringLiteral("Cannot record the bunch: %1").arg(b.lastError().text()));

        QSqlQuery g(db);
        g.prepare(QStringLiteral("INSERT INTO generations(id, bunch_id, connection_id, status, storage_size) "
                                 "VALUES(?,?,?,?,?) ON CONFLICT(id) DO UPDATE SET "
                                 "status=MAX(status, excluded.status), storage_size=storage_size+excluded.storage_size"));
        for (const QVariant& value : {QVariant(text(point->generationId)), QVariant(text(point->bunchId)),
                                      QVariant(text(point->connectionId)), QVariant(point->status),
                                      QVariant(point->sizeOnStorage)})
            g.addBindValue(value);
        if (!g.exec())
            return fail(QStringLiteral("Cannot record the generation: %1").arg(g.lastError().text()));

        QSqlQuery r(db);
        r.prepare(QStringLiteral("INSERT INTO restore_points(connection_id, bunch_id, generation_id, sequence, start_utc, "
                                 "backup_type, type, status, deep_sync, encrypted, size_on_storage) "
                                 "VALUES(?,?,?,?,?,?,?,?,?,?,?)"));
        for (const QVariant& value :
             {QVariant(text(point->connectionId)), QVariant(text(point->bunchId)), QVariant(text(point->generationId)),
              QVariant(point->sequenceNumber), stamp(point->startUtc), QVariant(point->backupType), QVariant(point->type),
              QVariant(point->status), QVariant(point->deepSync), QVariant(point->encrypted),
              QVariant(point->sizeOnStorage)})
            r.addBindValue(value);
        if (!r.exec())
            return fail(QStringLiteral("Cannot record the restore point: %1").arg(r.lastError().text()));
        const qint64 pointId = r.lastInsertId().toLongLong();

        QSqlQuery c(db);
        c.prepare(QStringLiteral("INSERT INTO contents(restore_point, path, parent, name, type, modified_utc, size, "
                                 "deleted, object) VALUES(?,?,?,?,?,?,?,?,?)"));
        for (const StoredContent& item : content) {
            for (const QVariant& value :
                 {QVariant(pointId), str(item.path), str(item.parentPath()), str(item.name()),
                  QVariant(item.type), stamp(item.modifiedUtc), QVariant(item.size), QVariant(item.deleted),
                  str(item.object)})
                c.addBindValue(value);
            if (!c.exec())
                return fail(QStringLiteral("Cannot record the content of the restore point: %1").arg(c.lastError().text()));
        }
        return true;
    });
}

int EngineStore::closeInterruptedRuns(int runningResult, int interruptedResult, int idleStatus)
{
    int count = 0;
    transaction([&] {
        QSqlQuery q(QSqlDatabase::database(m_connectionName, false));
        q.prepare(QStringLiteral("UPDATE runs SET result=?, error_message=? WHERE result=?"));
        q.addBindValue(interruptedResult);
        q.addBindValue(QStringLiteral("The engine stopped during the run"));
        q.addBindValue(runningResult);
        if (!q.exec())
            return fail(q.lastError().text());
        count = q.numRowsAffected();
        QSqlQuery p(QSqlDatabase::database(m_connectionName, false));
        p.prepare(QStringLiteral("UPDATE plans SET status=?"));
        p.addBindValue(idleStatus);
        return p.exec() || fail(p.lastError().text());
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
        sql += QStringLiteral(" AND %1>=?").arg(QLatin1String(timeColumn));
        *values << stamp(since);
    }
    if (!query.filter.isEmpty()) {
        sql += QStringLiteral(" AND instr(lower(%1), lower(?))>0").arg(QLatin1String(textColumn));
        *values << query.filter;
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

QList<RunRecord> EngineStore::runs(const HistoryQuery& query)
{
    QList<RunRecord> result;
    QVariantList values;
    const QString sql = QStringLiteral("SELECT id, plan_id, plan_name, operation, result, start_utc, duration, size, "
                                       "file_count, error_message FROM runs")
                        + historyFilter(query, "start_utc", "plan_name", &values);
    QSqlQuery q(QSqlDatabase::database(m_connectionName, false));
    q.prepare(sql);
    for (const QVariant& value : qAsConst(values))
        q.addBindValue(value);
    if (!q.exec()) {
        fail(q.lastError().text());
        return result;
    }
    while (q.next()) {
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

QList<RunFileRecord> EngineStore::runFiles(const HistoryQuery& query)
{
    QList<RunFileRecord> result;
    QVariantList values;
    const QString sql = QStringLiteral("SELECT id, run_id, plan_id, plan_name, file, operation, size, modified_utc, "
                                       "finish_utc, duration, message FROM run_files")
                        + historyFilter(query, "finish_utc", "file", &values);
    QSqlQuery q(QSqlDatabase::database(m_connectionName, false));
    q.prepare(sql);
    for (const QVariant& value : qAsConst(values))
        q.addBindValue(value);
    if (!q.exec()) {
        fail(q.lastError().text());
        return result;
    }
    while (q.next()) {
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

// ---- repository ----------------------------------------------------------

QList<StoredBunch> EngineStore::bunches(const QUuid& connectionId)
{
    QList<StoredBunch> result;
    QSqlQuery q(QSqlDatabase::database(m_connectionName, false));
    q.prepare(QStringLiteral("SELECT connection_id, id, display_name, type, plan_xml FROM bunches "
                             "WHERE connection_id=? ORDER BY display_name"));
    q.addBindValue(text(connectionId));
    if (!q.exec())
        return result;
    while (q.next()) {
        StoredBunch b;
        b.connectionId = QUuid(q.value(0).toString());
        b.id = QUuid(q.value(1).toString());
        b.displayName = q.value(2).toString();
        b.type = q.value(3).toInt();
        b.planXml = q.value(4).toString();
        result.append(b);
    }
    return result;
}

std::optional<StoredBunch> EngineStore::bunch(const QUuid& connectionId, const QUuid& bunchId)
{
    for (const StoredBunch& b : bunches(connectionId)) {
        if (b.id == bunchId)
            return b;
    }
    return std::nullopt;
}

QList<StoredGeneration> EngineStore::generations(const QUuid& connectionId, const QUuid& bunchId)
{
    QList<StoredGeneration> result;
    QSqlQuery q(QSqlDatabase::database(m_connectionName, false));
    q.prepare(QStringLiteral(
        "SELECT g.id, g.bunch_id, g.connection_id, g.status, g.broken_type, g.deep_sync, g.encrypted, g.hint, "
        "g.storage_size, MIN(r.start_utc), MAX(r.start_utc) FROM generations g "
        "LEFT JOIN restore_points r ON r.generation_id=g.id "
        "WHERE g.connection_id=? AND g.bunch_id=? GROUP BY g.id ORDER BY MIN(r.start_utc)"));
    q.addBindValue(text(connectionId));
    q.addBindValue(text(bunchId));
    if (!q.exec())
        return result;
    while (q.next()) {
        StoredGeneration g;
        g.id = QUuid(q.value(0).toString());
        g.bunchId = QUuid(q.value(1).toString());
        g.connectionId = QUuid(q.value(2).toString());
        g.status = q.value(3).toInt();
        g.brokenType = q.value(4).toInt();
        g.deepSync = q.value(5).toInt();
        g.encrypted = q.value(6).toBool();
        g.hint = q.value(7).toString();
        g.storageSize = q.value(8).toLongLong();
        g.firstRestorePoint = readStamp(q.value(9));
        g.lastRestorePoint = readStamp(q.value(10));
        result.append(g);
    }
    return result;
}

std::optional<StoredGeneration> EngineStore::generation(const QUuid& generationId)
{
    QSqlQuery q(QSqlDatabase::database(m_connectionName, false));
    q.prepare(QStringLiteral("SELECT connection_id, bunch_id FROM generations WHERE id=?"));
    q.addBindValue(text(generationId));
    if (!q.exec() || !q.next())
        return std::nullopt;
    for (const StoredGeneration& g : generations(QUuid(q.value(0).toString()), QUuid(q.value(1).toString()))) {
        if (g.id == generationId)
            return g;
    }
    return std::nullopt;
}

QList<StoredRestorePoint> EngineStore::restorePoints(const QUuid& connectionId, const QUuid& bunchId,
                                                     const QUuid& generationId)
{
    QList<StoredRestorePoint> result;
    QSqlQuery q(QSqlDatabase::database(m_connectionName, false));
    QString sql = QStringLiteral("SELECT %1 FROM restore_points WHERE connection_id=? AND bunch_id=?").arg(RestorePointColumns);
    if (!generationId.isNull())
        sql += QStringLiteral(" AND generation_id=?");
    q.prepare(sql + QStringLiteral(" ORDER BY start_utc, sequence"));
    q.addBindValue(text(connectionId));
    q.addBindValue(text(bunchId));
    if (!generationId.isNull())
        q.addBindValue(text(generationId));
    if (!q.exec())
        return result;
    while (q.next())
        result.append(readRestorePoint(q));
    return result;
}

std::optional<StoredRestorePoint> EngineStore::latestRestorePoint(const QUuid& connectionId, const QUuid& bunchId)
{
    return restorePointAt(connectionId, bunchId, QDateTime());
}

std::optional<StoredRestorePoint> EngineStore::restorePointAt(const QUuid& connectionId, const QUuid& bunchId,
                                                              const QDateTime& startUtc)
{
    QSqlQuery q(QSqlDatabase::database(m_connectionName, false));
    QString sql = QStringLiteral("SELECT %1 FROM restore_points WHERE connection_id=? AND bunch_id=?").arg(RestorePointColumns);
    if (startUtc.isValid())
        sql += QStringLiteral(" AND start_utc<=?");
    q.prepare(sql + QStringLiteral(" ORDER BY start_utc DESC, id DESC LIMIT 1"));
    q.addBindValue(text(connectionId));
    q.addBindValue(text(bunchId));
    // A point in time names the newest restore point started by then; the
    // whole second counts, since dates travel without their milliseconds.
    if (startUtc.isValid())
        q.addBindValue(stamp(startUtc.addMSecs(999 - startUtc.time().msec())));
    if (!q.exec() || !q.next())
        return std::nullopt;
    return readRestorePoint(q);
}

QList<StoredContent> EngineStore::content(qint64 restorePointRowId)
{
    QList<StoredContent> result;
    QSqlQuery q(QSqlDatabase::database(m_connectionName, false));
    q.setForwardOnly(true);
    q.prepare(QStringLiteral("SELECT path, type, modified_utc, size, deleted, object FROM contents "
                             "WHERE restore_point=? ORDER BY path"));
    q.addBindValue(restorePointRowId);
    if (!q.exec())
        return result;
    while (q.next())
        result.append(readContent(q));
    return result;
}

QList<StoredContent> EngineStore::contentChildren(qint64 restorePointRowId, const QString& parent, int offset,
                                                  int limit)
{
    QList<StoredContent> result;
    QSqlQuery q(QSqlDatabase::database(m_connectionName, false));
    q.prepare(QStringLiteral("SELECT path, type, modified_utc, size, deleted, object FROM contents "
                             "WHERE restore_point=? AND parent=? ORDER BY type, name LIMIT ? OFFSET ?"));
    q.addBindValue(restorePointRowId);
    q.addBindValue(parent);
    q.addBindValue(limit);
    q.addBindValue(offset);
    if (!q.exec())
        return result;
    while (q.next())
        result.append(readContent(q));
    return result;
}

bool EngineStore::removeBunch(const QUuid& connectionId, const QUuid& bunchId)
{
    return transaction([&] {
        QSqlDatabase db = QSqlDatabase::database(m_connectionName, false);
        QSqlQuery g(db);
        g.prepare(QStringLiteral("DELETE FROM generations WHERE connection_id=? AND bunch_id=?"));
        g.addBindValue(text(connectionId));
        g.addBindValue(text(bunchId));
        QSqlQuery b(db);
        b.prepare(QStringLiteral("DELETE FROM bunches WHERE connection_id=? AND id=?"));
        b.addBindValue(text(connectionId));
        b.addBindValue(text(bunchId));
        if (!g.exec() || !b.exec())
            return fail(QStringLiteral("Cannot remove the bunch: %1").arg(db.lastError().text()));
        return b.numRowsAffected() > 0 || fail(QStringLiteral("No bunch with the id %1").arg(text(bunchId)));
    });
}

bool EngineStore::removeGeneration(const QUuid& generationId)
{
    return deleteById(QStringLiteral("generations"), generationId, QStringLiteral("generation"),
                      QStringLiteral("No generation with the id %1"));
}

bool EngineStore::deleteById(const QString& table, const QUuid& id, const QString& what, const QString& missing)
{
    return transaction([&] {
        QSqlQuery q(QSqlDatabase::database(m_connectionName, false));
        q.prepare(QStringLiteral("DELETE FROM %1 WHERE id=?").arg(table));
        q.addBindValue(text(id));
        if (!q.exec())
            return fail(QStringLiteral("Cannot remove the %1: %2").arg(what, q.lastError().text()));
        return q.numRowsAffected() > 0 || fail(missing.arg(text(id)));
    });
}

} // namespace NVB::Engine
