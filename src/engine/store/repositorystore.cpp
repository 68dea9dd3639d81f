#include "repositorystore.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

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

const QString ContentColumns
    = QStringLiteral("path, type, modified_utc, size, deleted, object, checksum, modified_ns, "
                     "changed_ns, inode, mode, owner, grp, link_target, encoding, stored_size");

StoredContent readContent(const QSqlQuery& q)
{
    StoredContent c;
    c.path = q.value(0).toString();
    c.type = q.value(1).toInt();
    c.modifiedUtc = readStamp(q.value(2));
    c.size = q.value(3).toLongLong();
    c.deleted = q.value(4).toBool();
    c.object = q.value(5).toString();
    c.checksum = q.value(6).toByteArray();
    c.modifiedNs = q.value(7).toLongLong();
    c.changedNs = q.value(8).toLongLong();
    c.inode = quint64(q.value(9).toLongLong());
    c.mode = uint(q.value(10).toLongLong());
    c.owner = q.value(11).toLongLong();
    c.group = q.value(12).toLongLong();
    c.linkTarget = q.value(13).toString();
    c.encoding = q.value(14).toInt();
    c.storedSize = q.value(15).toLongLong();
    return c;
}

} // namespace

RepositoryStore::RepositoryStore(StoreDatabase& database)
    : m_db(database)
{ }

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
    q.prepare(QStringLiteral("SELECT %1 FROM contents WHERE restore_point=? ORDER BY path").arg(ContentColumns));
    q.addBindValue(restorePointRowId);
    if (!q.exec())
        return result;
    while (q.next())
        result.append(readContent(q));
    return result;
}

QList<StoredContent> RepositoryStore::contentChildren(
    qint64 restorePointRowId, const QString& parent, int offset, int limit)
{
    QList<StoredContent> result;
    QSqlQuery q(m_db.database());
    q.prepare(QStringLiteral("SELECT %1 FROM contents WHERE restore_point=? AND parent=? "
                             "ORDER BY type, name LIMIT ? OFFSET ?")
                  .arg(ContentColumns));
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

bool RepositoryStore::removeBunch(const QUuid& connectionId, const QUuid& bunchId)
{
    return m_db.transaction([&] {
        QSqlDatabase db = m_db.database();
        QSqlQuery g(db);
        g.prepare(QStringLiteral("DELETE FROM generations WHERE connection_id=? AND bunch_id=?"));
        g.addBindValue(text(connectionId));
        g.addBindValue(text(bunchId));
        QSqlQuery b(db);
        b.prepare(QStringLiteral("DELETE FROM bunches WHERE connection_id=? AND id=?"));
        b.addBindValue(text(connectionId));
        b.addBindValue(text(bunchId));
        if (!g.exec() || !b.exec())
            return m_db.fail(QStringLiteral("Cannot remove the bunch: %1").arg(db.lastError().text()));
        return b.numRowsAffected() > 0 || m_db.fail(QStringLiteral("No bunch with the id %1").arg(text(bunchId)));
    });
}

bool RepositoryStore::removeGeneration(const QUuid& generationId)
{
    return m_db.deleteById(QStringLiteral("generations"), generationId, QStringLiteral("generation"),
        QStringLiteral("No generation with the id %1"));
}

bool RepositoryStore::removeFromRestorePoints(
    const QHash<qint64, QStringList>& pathsByPoint, const QList<qint64>& points)
{
    return m_db.transaction([&] {
        QSqlDatabase db = m_db.database();
        QSqlQuery c(db);
        c.prepare(QStringLiteral("DELETE FROM contents WHERE restore_point=? AND path=?"));
        for (auto it = pathsByPoint.cbegin(); it != pathsByPoint.cend(); ++it) {
            for (const QString& path : it.value()) {
                c.addBindValue(it.key());
                c.addBindValue(path);
                if (!c.exec())
                    return m_db.fail(QStringLiteral("Cannot remove from a restore point: %1").arg(c.lastError().text()));
            }
        }
        QSqlQuery p(db);
        p.prepare(QStringLiteral("DELETE FROM restore_points WHERE id=?"));
        for (qint64 point : points) {
            p.addBindValue(point);
            if (!p.exec())
                return m_db.fail(QStringLiteral("Cannot remove a restore point: %1").arg(p.lastError().text()));
        }
        return true;
    });
}

qint64 RepositoryStore::insertRestorePoint(
    const StoredBunch& bunch, const StoredRestorePoint& point, const QList<StoredContent>& content)
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
    const qint64 pointId = r.lastInsertId().toLongLong();

    QSqlQuery c(db);
    c.prepare(
        QStringLiteral("INSERT INTO contents(restore_point, path, parent, name, type, modified_utc, size, "
                       "deleted, object, checksum, modified_ns, changed_ns, inode, mode, owner, grp, link_target, "
                       "encoding, stored_size) VALUES(?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)"));
    for (const StoredContent& item : content) {
        for (const QVariant& value : {QVariant(pointId), str(item.path), str(item.parentPath()), str(item.name()),
                 QVariant(item.type), stamp(item.modifiedUtc), QVariant(item.size), QVariant(item.deleted),
                 str(item.object), QVariant(item.checksum.isNull() ? QByteArray("") : item.checksum),
                 QVariant(item.modifiedNs), QVariant(item.changedNs), QVariant(qint64(item.inode)),
                 QVariant(qint64(item.mode)), QVariant(item.owner), QVariant(item.group), str(item.linkTarget),
                 QVariant(item.encoding), QVariant(item.storedSize)})
            c.addBindValue(value);
        if (!c.exec()) {
            m_db.fail(QStringLiteral("Cannot record the content of the restore point: %1").arg(c.lastError().text()));
            return 0;
        }
    }
    return pointId;
}

} // namespace NVB::Engine
