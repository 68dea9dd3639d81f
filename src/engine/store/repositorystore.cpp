#include "repositorystore.h"

#include <QHash>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include "contentrecorder.h"
#include "contentrow.h"
#include "storedatabase.h"
#include "storevalues.h"

namespace NVB::Engine {

using namespace StoreValues;

namespace {

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

} // namespace

RepositoryStore::RepositoryStore(StoreDatabase& database)
    : m_db(database)
{ }

RepositoryStore::~RepositoryStore() = default;

QList<StoredBunch> RepositoryStore::bunches(const QUuid& connectionId)
{
    QList<StoredBunch> result;
    QSqlQuery q(m_db.database());
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

std::optional<StoredBunch> RepositoryStore::bunch(const QUuid& connectionId, const QUuid& bunchId)
{
    for (const StoredBunch& b : bunches(connectionId)) {
        if (b.id == bunchId)
            return b;
    }
    return std::nullopt;
}

QList<StoredGeneration> RepositoryStore::generations(const QUuid& connectionId, const QUuid& bunchId)
{
    QList<StoredGeneration> result;
    QSqlQuery q(m_db.database());
    q.prepare(QStringLiteral(
        "SELECT g.id, g.bunch_id, g.connection_id, g.status, g.broken_type, g.deep_sync, g.encrypted, g.hint, "
        "g.storage_size, MIN(r.start_utc), MAX(r.start_utc) FROM generations g "
        "LEFT JOIN restore_points r ON r.generation_id=g.id "
        "WHERE g.connection_id=? AND g.bunch_id=? GROUP BY g.id ORDER BY MIN(r.id)"));
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

std::optional<StoredGeneration> RepositoryStore::generation(const QUuid& generationId)
{
    QSqlQuery q(m_db.database());
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

QList<StoredRestorePoint> RepositoryStore::restorePoints(
    const QUuid& connectionId, const QUuid& bunchId, const QUuid& generationId)
{
    QList<StoredRestorePoint> result;
    QSqlQuery q(m_db.database());
    QString sql
        = QStringLiteral("SELECT %1 FROM restore_points WHERE connection_id=? AND bunch_id=?").arg(RestorePointColumns);
    if (!generationId.isNull())
        sql += QStringLiteral(" AND generation_id=?");
    q.prepare(sql + QStringLiteral(" ORDER BY id"));
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

std::optional<StoredRestorePoint> RepositoryStore::latestRestorePoint(const QUuid& connectionId, const QUuid& bunchId)
{
    return restorePointAt(connectionId, bunchId, QDateTime());
}

std::optional<StoredRestorePoint> RepositoryStore::restorePointAt(
    const QUuid& connectionId, const QUuid& bunchId, const QDateTime& startUtc)
{
    QSqlQuery q(m_db.database());
    QString sql
        = QStringLiteral("SELECT %1 FROM restore_points WHERE connection_id=? AND bunch_id=?").arg(RestorePointColumns);
    if (startUtc.isValid())
        sql += QStringLiteral(" AND start_utc<=?");
    q.prepare(sql + QStringLiteral(" ORDER BY id DESC LIMIT 1"));
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

QList<StoredContent> RepositoryStore::content(qint64 restorePointRowId)
{
    QList<StoredContent> result;
    QSqlQuery q(m_db.database());
    q.setForwardOnly(true);
    q.prepare(QStringLiteral("SELECT %1 FROM restore_points r JOIN contents c ON c.generation=r.generation_id "
                             "AND c.first_seq<=r.sequence AND c.last_seq>=r.sequence WHERE r.id=? ORDER BY c.path")
                  .arg(ContentRow::columns()));
    q.addBindValue(restorePointRowId);
    if (!q.exec())
        return result;
    while (q.next())
        result.append(ContentRow::read(q));
    return result;
}

QList<StoredContent> RepositoryStore::contentChildren(
    qint64 restorePointRowId, const QString& parent, int offset, int limit)
{
    QList<StoredContent> result;
    QSqlQuery q(m_db.database());
    q.prepare(QStringLiteral("SELECT %1 FROM restore_points r JOIN contents c INDEXED BY contents_by_parent "
                             "ON c.generation=r.generation_id AND c.parent=? AND c.first_seq<=r.sequence AND "
                             "c.last_seq>=r.sequence WHERE r.id=? "
                             "ORDER BY c.type, c.name LIMIT ? OFFSET ?")
                  .arg(ContentRow::columns()));
    q.addBindValue(parent);
    q.addBindValue(restorePointRowId);
    q.addBindValue(limit);
    q.addBindValue(offset);
    if (!q.exec())
        return result;
    while (q.next())
        result.append(ContentRow::read(q));
    return result;
}

std::optional<QList<StoredContent>> RepositoryStore::currentChildren(const QUuid& generationId, const QString& parent)
{
    if (!m_childrenQuery) {
        m_childrenQuery = std::make_unique<QSqlQuery>(m_db.database());
        m_childrenQuery->setForwardOnly(true);
        // Without statistics SQLite prefers the primary key's generation
        // prefix, a scan of the whole generation, to the parent index.
        if (!m_childrenQuery->prepare(QStringLiteral("SELECT %1 FROM contents c INDEXED BY contents_by_parent "
                                                     "WHERE c.generation=? AND c.parent=? AND c.last_seq=?")
                                          .arg(ContentRow::columns()))) {
            m_childrenQuery.reset();
            return std::nullopt;
        }
    }
    QSqlQuery& q = *m_childrenQuery;
    q.bindValue(0, text(generationId));
    q.bindValue(1, str(parent));
    q.bindValue(2, OpenEnd);
    if (!q.exec())
        return std::nullopt;
    QList<StoredContent> result;
    while (q.next())
        result.append(ContentRow::read(q));
    q.finish();
    return result;
}

std::optional<QStringList> RepositoryStore::currentParents(const QUuid& generationId)
{
    QSqlQuery q(m_db.database());
    q.setForwardOnly(true);
    q.prepare(QStringLiteral("SELECT DISTINCT parent FROM contents WHERE generation=? AND last_seq=?"));
    q.addBindValue(text(generationId));
    q.addBindValue(OpenEnd);
    if (!q.exec())
        return std::nullopt;
    QStringList result;
    while (q.next())
        result.append(q.value(0).toString());
    return result;
}

std::optional<QString> RepositoryStore::currentObjectEncoded(const QUuid& generationId, int encodingMask)
{
    QSqlQuery q(m_db.database());
    q.prepare(QStringLiteral("SELECT object FROM contents WHERE generation=? AND last_seq=? AND (encoding & ?)<>0 "
                             "AND object<>'' LIMIT 1"));
    q.addBindValue(text(generationId));
    q.addBindValue(OpenEnd);
    q.addBindValue(encodingMask);
    if (!q.exec() || !q.next())
        return std::nullopt;
    return q.value(0).toString();
}

qint64 RepositoryStore::insertPointRow(const StoredBunch& bunch, const StoredRestorePoint& point)
{
    QSqlDatabase db = m_db.database();
    QSqlQuery b(db);
    b.prepare(QStringLiteral("INSERT INTO bunches(connection_id, id, display_name, type, plan_xml) VALUES(?,?,?,?,?) "
                             "ON CONFLICT(connection_id, id) DO UPDATE SET display_name=excluded.display_name, "
                             "type=excluded.type, plan_xml=excluded.plan_xml"));
    for (const QVariant& value : {QVariant(text(bunch.connectionId)), QVariant(text(bunch.id)), str(bunch.displayName),
             QVariant(bunch.type), str(bunch.planXml)})
        b.addBindValue(value);
    if (!b.exec()) {
        m_db.fail(QStringLiteral("Cannot record the bunch: %1").arg(b.lastError().text()));
        return 0;
    }

    QSqlQuery g(db);
    g.prepare(QStringLiteral("INSERT INTO generations(id, bunch_id, connection_id, status, storage_size) "
                             "VALUES(?,?,?,?,?) ON CONFLICT(id) DO UPDATE SET "
                             "status=MAX(status, excluded.status), storage_size=storage_size+excluded.storage_size"));
    for (const QVariant& value : {QVariant(text(point.generationId)), QVariant(text(point.bunchId)),
             QVariant(text(point.connectionId)), QVariant(point.status), QVariant(point.sizeOnStorage)})
        g.addBindValue(value);
    if (!g.exec()) {
        m_db.fail(QStringLiteral("Cannot record the generation: %1").arg(g.lastError().text()));
        return 0;
    }

    QSqlQuery r(db);
    r.prepare(QStringLiteral("INSERT INTO restore_points(connection_id, bunch_id, generation_id, sequence, start_utc, "
                             "backup_type, type, status, deep_sync, encrypted, size_on_storage) "
                             "VALUES(?,?,?,?,?,?,?,?,?,?,?)"));
    for (const QVariant& value :
        {QVariant(text(point.connectionId)), QVariant(text(point.bunchId)), QVariant(text(point.generationId)),
            QVariant(point.sequenceNumber), stamp(point.startUtc), QVariant(point.backupType), QVariant(point.type),
            QVariant(point.status), QVariant(point.deepSync), QVariant(point.encrypted), QVariant(point.sizeOnStorage)})
        r.addBindValue(value);
    if (!r.exec()) {
        m_db.fail(QStringLiteral("Cannot record the restore point: %1").arg(r.lastError().text()));
        return 0;
    }
    return r.lastInsertId().toLongLong();
}

qint64 RepositoryStore::insertRestorePoint(
    const StoredBunch& bunch, const StoredRestorePoint& point, const QList<StoredContent>& content)
{
    const qint64 pointId = insertPointRow(bunch, point);
    if (pointId == 0)
        return 0;
    return ContentRecorder(m_db, text(point.generationId), point.sequenceNumber).record(content) ? pointId : 0;
}

qint64 RepositoryStore::insertRestorePoint(
    const StoredBunch& bunch, const StoredRestorePoint& point, const ContentChanges& changes)
{
    const qint64 pointId = insertPointRow(bunch, point);
    if (pointId == 0)
        return 0;
    return ContentRecorder(m_db, text(point.generationId), point.sequenceNumber).record(changes) ? pointId : 0;
}

} // namespace NVB::Engine
