#include "restorepointremoval.h"

#include <QSet>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include "storedatabase.h"
#include "storevalues.h"

namespace NVB::Engine {

using namespace StoreValues;

RestorePointRemoval::RestorePointRemoval(StoreDatabase& database)
    : m_db(database)
{ }

bool RestorePointRemoval::removeBunch(const QUuid& connectionId, const QUuid& bunchId)
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

bool RestorePointRemoval::removeGeneration(const QUuid& generationId)
{
    return m_db.deleteById(QStringLiteral("generations"), generationId, QStringLiteral("generation"),
        QStringLiteral("No generation with the id %1"));
}

bool RestorePointRemoval::removeFromRestorePoints(
    const QHash<qint64, QStringList>& pathsByPoint, const QList<qint64>& points)
{
    return m_db.transaction([&] {
        QSqlDatabase db = m_db.database();
        QSqlQuery where(db);
        where.prepare(QStringLiteral("SELECT generation_id, sequence FROM restore_points WHERE id=?"));
        QSet<QString> touched;
        auto locate = [&](qint64 point, QString* generation, qint64* sequence) {
            where.addBindValue(point);
            if (!where.exec() || !where.next())
                return false;
            *generation = where.value(0).toString();
            *sequence = where.value(1).toLongLong();
            touched.insert(*generation);
            return true;
        };

        // A row holds for a range of the generation's points: taking a path
        // out of one point splits its row around that point, keeping only
        // the parts that some other point still reads.
        QSqlQuery row(db);
        row.prepare(QStringLiteral("SELECT first_seq, last_seq, "
                                   "EXISTS(SELECT 1 FROM restore_points r WHERE r.generation_id=c.generation "
                                   "AND r.sequence>=c.first_seq AND r.sequence<?), "
                                   "EXISTS(SELECT 1 FROM restore_points r WHERE r.generation_id=c.generation "
                                   "AND r.sequence>? AND r.sequence<=c.last_seq) "
                                   "FROM contents c WHERE generation=? AND path=? AND first_seq<=? AND last_seq>=?"));
        QSqlQuery after(db);
        after.prepare(QStringLiteral(
            "INSERT INTO contents(generation, path, first_seq, last_seq, parent, name, type, modified_utc, size, "
            "deleted, object, checksum, modified_ns, changed_ns, inode, mode, owner, grp, link_target, encoding, "
            "stored_size) SELECT generation, path, ?, last_seq, parent, name, type, modified_utc, size, deleted, "
            "object, checksum, modified_ns, changed_ns, inode, mode, owner, grp, link_target, encoding, stored_size "
            "FROM contents WHERE generation=? AND path=? AND first_seq=?"));
        QSqlQuery before(db);
        before.prepare(QStringLiteral("UPDATE contents SET last_seq=? WHERE generation=? AND path=? AND first_seq=?"));
        QSqlQuery drop(db);
        drop.prepare(QStringLiteral("DELETE FROM contents WHERE generation=? AND path=? AND first_seq=?"));
        auto fail = [this](const QSqlQuery& q) {
            return m_db.fail(QStringLiteral("Cannot remove from a restore point: %1").arg(q.lastError().text()));
        };
        for (auto it = pathsByPoint.cbegin(); it != pathsByPoint.cend(); ++it) {
            QString generation;
            qint64 sequence = 0;
            if (!locate(it.key(), &generation, &sequence))
                return m_db.fail(QStringLiteral("No restore point with the id %1").arg(it.key()));
            for (const QString& path : it.value()) {
                for (const QVariant& value : {QVariant(sequence), QVariant(sequence), QVariant(generation), str(path),
                         QVariant(sequence), QVariant(sequence)})
                    row.addBindValue(value);
                if (!row.exec())
                    return fail(row);
                if (!row.next())
                    continue;
                const qint64 first = row.value(0).toLongLong();
                const bool keepBefore = row.value(2).toBool();
                const bool keepAfter = row.value(3).toBool();
                row.finish();
                if (keepAfter) {
                    for (const QVariant& value :
                        {QVariant(sequence + 1), QVariant(generation), str(path), QVariant(first)})
                        after.addBindValue(value);
                    if (!after.exec())
                        return fail(after);
                }
                QSqlQuery& change = keepBefore ? before : drop;
                if (keepBefore)
                    change.addBindValue(sequence - 1);
                for (const QVariant& value : {QVariant(generation), str(path), QVariant(first)})
                    change.addBindValue(value);
                if (!change.exec())
                    return fail(change);
            }
        }

        QSqlQuery p(db);
        p.prepare(QStringLiteral("DELETE FROM restore_points WHERE id=?"));
        for (qint64 point : points) {
            QString generation;
            qint64 sequence = 0;
            if (!locate(point, &generation, &sequence))
                continue;
            p.addBindValue(point);
            if (!p.exec())
                return m_db.fail(QStringLiteral("Cannot remove a restore point: %1").arg(p.lastError().text()));
        }

        // Rows no remaining point reads go; rows of a generation's latest
        // point stay open-ended, so the next run keeps them by not naming them.
        QSqlQuery orphans(db);
        orphans.prepare(QStringLiteral("DELETE FROM contents WHERE generation=? AND NOT EXISTS(SELECT 1 FROM "
                                       "restore_points r WHERE r.generation_id=contents.generation "
                                       "AND r.sequence>=contents.first_seq AND r.sequence<=contents.last_seq)"));
        QSqlQuery reopen(db);
        reopen.prepare(QStringLiteral("UPDATE contents SET last_seq=? WHERE generation=? AND last_seq<>? AND "
                                      "last_seq>=(SELECT MAX(sequence) FROM restore_points WHERE generation_id=?)"));
        for (const QString& generation : std::as_const(touched)) {
            orphans.addBindValue(generation);
            if (!orphans.exec())
                return fail(orphans);
            for (const QVariant& value :
                {QVariant(OpenEnd), QVariant(generation), QVariant(OpenEnd), QVariant(generation)})
                reopen.addBindValue(value);
            if (!reopen.exec())
                return fail(reopen);
        }
        return true;
    });
}

} // namespace NVB::Engine
