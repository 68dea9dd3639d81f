#include "contentrecorder.h"

#include <QHash>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include "contentrow.h"
#include "storedatabase.h"
#include "storevalues.h"

namespace NVB::Engine {

using namespace StoreValues;

namespace {

// Ends open rows of a generation before a new point. A row that began after
// `lastSeq` belonged only to a point deleted since, and goes.
class OpenRows
{
public:
    enum Scope { Path, Parent, All };

    OpenRows(StoreDatabase& db, const QString& generation, qint64 lastSeq)
        : m_db(db)
        , m_generation(generation)
        , m_lastSeq(lastSeq)
    { }

    bool close(Scope scope, const QString& value)
    {
        QSqlQuery& end = m_end[scope];
        QSqlQuery& drop = m_drop[scope];
        if (!m_prepared[scope]) {
            const QString where = QStringLiteral(" WHERE generation=? AND last_seq=? AND %1 first_seq")
                                      .arg(scope == Path        ? QStringLiteral("path=? AND")
                                              : scope == Parent ? QStringLiteral("parent=? AND")
                                                                : QString());
            end = QSqlQuery(m_db.database());
            drop = QSqlQuery(m_db.database());
            // Without statistics SQLite prefers the primary key's generation
            // prefix, a scan of the whole generation, to the parent index.
            const QString table = scope == Parent ? QStringLiteral("contents INDEXED BY contents_by_parent")
                                                  : QStringLiteral("contents");
            if (!end.prepare(QStringLiteral("UPDATE %1 SET last_seq=?").arg(table) + where + QStringLiteral("<=?"))
                || !drop.prepare(QStringLiteral("DELETE FROM %1").arg(table) + where + QStringLiteral(">?")))
                return m_db.fail(QStringLiteral("Cannot close content rows: %1").arg(end.lastError().text()));
            m_prepared[scope] = true;
        }
        int column = 0;
        end.bindValue(column++, m_lastSeq);
        for (QSqlQuery* q : {&end, &drop}) {
            q->bindValue(column++, m_generation);
            q->bindValue(column++, OpenEnd);
            if (scope != All)
                q->bindValue(column++, value);
            q->bindValue(column++, m_lastSeq);
            column = 0;
        }
        if (!end.exec() || !drop.exec())
            return m_db.fail(QStringLiteral("Cannot close content rows: %1")
                                 .arg(end.lastError().isValid() ? end.lastError().text() : drop.lastError().text()));
        return true;
    }

private:
    StoreDatabase& m_db;
    QString m_generation;
    qint64 m_lastSeq;
    QSqlQuery m_end[3];
    QSqlQuery m_drop[3];
    bool m_prepared[3] = {false, false, false};
};

} // namespace

ContentRecorder::ContentRecorder(StoreDatabase& database, const QString& generation, qint64 sequence)
    : m_db(database)
    , m_generation(generation)
    , m_sequence(sequence)
{ }

bool ContentRecorder::record(const QList<StoredContent>& content)
{
    QHash<QString, const StoredContent*> pending;
    pending.reserve(content.size());
    for (const StoredContent& item : content)
        pending.insert(item.path, &item);
    if (hasContent()) {
        // Entries equal to the latest point's keep their rows; the rest of
        // that point's rows end before this one.
        QStringList stale;
        {
            QSqlQuery q(m_db.database());
            q.setForwardOnly(true);
            q.prepare(QStringLiteral("SELECT %1 FROM contents c WHERE c.generation=? AND c.last_seq=?")
                          .arg(ContentRow::columns()));
            q.addBindValue(m_generation);
            q.addBindValue(OpenEnd);
            if (!q.exec())
                return m_db.fail(QStringLiteral("Cannot read the latest restore point: %1").arg(q.lastError().text()));
            while (q.next()) {
                const StoredContent held = ContentRow::read(q);
                const auto it = pending.find(held.path);
                if (it != pending.end() && (*it)->sameRecord(held))
                    pending.erase(it);
                else
                    stale.append(held.path);
            }
        }
        OpenRows rows(m_db, m_generation, m_sequence - 1);
        for (const QString& path : std::as_const(stale)) {
            if (!rows.close(OpenRows::Path, path))
                return false;
        }
    }
    QList<const StoredContent*> items;
    items.reserve(pending.size());
    for (const StoredContent& item : content) {
        if (pending.value(item.path) == &item)
            items.append(&item);
    }
    return insert(items);
}

bool ContentRecorder::record(const ContentChanges& changes)
{
    if (hasContent()) {
        OpenRows rows(m_db, m_generation, m_sequence - 1);
        bool ok = true;
        if (changes.replacesAll) {
            ok = rows.close(OpenRows::All, QString());
        } else {
            for (const QString& folder : changes.emptiedFolders)
                ok = ok && rows.close(OpenRows::Parent, folder);
            for (const QString& path : changes.removed)
                ok = ok && rows.close(OpenRows::Path, path);
            for (const StoredContent& item : changes.added)
                ok = ok && rows.close(OpenRows::Path, item.path);
            if (changes.stagedRun > 0)
                ok = ok && closeStaged(changes.stagedRun);
        }
        if (!ok)
            return false;
    }
    if (changes.stagedRun > 0 && !insertStaged(changes.stagedRun))
        return false;
    QList<const StoredContent*> items;
    items.reserve(changes.added.size());
    for (const StoredContent& item : changes.added)
        items.append(&item);
    return insert(items);
}

bool ContentRecorder::hasContent()
{
    QSqlQuery q(m_db.database());
    q.prepare(QStringLiteral("SELECT 1 FROM contents WHERE generation=? LIMIT 1"));
    q.addBindValue(m_generation);
    return q.exec() && q.next();
}

bool ContentRecorder::insert(const QList<const StoredContent*>& items)
{
    QSqlQuery c(m_db.database());
    c.prepare(QStringLiteral("INSERT INTO contents(generation, path, first_seq, last_seq, parent, name, type, "
                             "modified_utc, size, deleted, object, checksum, modified_ns, changed_ns, inode, mode, "
                             "owner, grp, link_target, encoding, stored_size) "
                             "VALUES(?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)"));
    const QVariant generationValue(m_generation);
    const QVariant first(m_sequence);
    const QVariant open(OpenEnd);
    for (const StoredContent* item : items) {
        int column = 0;
        for (const QVariant& value :
            {generationValue, str(item->path), first, open, str(item->parentPath()), str(item->name()),
                QVariant(item->type), stamp(item->modifiedUtc), QVariant(item->size), QVariant(item->deleted),
                str(item->object), QVariant(item->checksum.isNull() ? QByteArray("") : item->checksum),
                QVariant(item->modifiedNs), QVariant(item->changedNs), QVariant(qint64(item->inode)),
                QVariant(qint64(item->mode)), QVariant(item->owner), QVariant(item->group), str(item->linkTarget),
                QVariant(item->encoding), QVariant(item->storedSize)})
            c.bindValue(column++, value);
        if (!c.exec())
            return m_db.fail(
                QStringLiteral("Cannot record the content of the restore point: %1").arg(c.lastError().text()));
    }
    return true;
}

bool ContentRecorder::closeStaged(qint64 runId)
{
    // As OpenRows does path by path, for every staged path at once.
    const qint64 lastSeq = m_sequence - 1;
    QSqlQuery end(m_db.database());
    QSqlQuery drop(m_db.database());
    const QString where = QStringLiteral(" WHERE generation=? AND last_seq=? AND path IN "
                                         "(SELECT path FROM staged_contents WHERE run_id=?) AND first_seq");
    if (!end.prepare(QStringLiteral("UPDATE contents SET last_seq=?") + where + QStringLiteral("<=?"))
        || !drop.prepare(QStringLiteral("DELETE FROM contents") + where + QStringLiteral(">?")))
        return m_db.fail(QStringLiteral("Cannot close content rows: %1").arg(end.lastError().text()));
    end.addBindValue(lastSeq);
    for (QSqlQuery* q : {&end, &drop}) {
        for (const QVariant& value : {QVariant(m_generation), QVariant(OpenEnd), QVariant(runId), QVariant(lastSeq)})
            q->addBindValue(value);
        if (!q->exec())
            return m_db.fail(QStringLiteral("Cannot close content rows: %1").arg(q->lastError().text()));
    }
    return true;
}

bool ContentRecorder::insertStaged(qint64 runId)
{
    QSqlQuery q(m_db.database());
    q.prepare(QStringLiteral(
        "INSERT INTO contents(generation, path, first_seq, last_seq, parent, name, type, modified_utc, size, "
        "deleted, object, checksum, modified_ns, changed_ns, inode, mode, owner, grp, link_target, encoding, "
        "stored_size) SELECT ?, path, ?, ?, parent, name, type, modified_utc, size, deleted, object, checksum, "
        "modified_ns, changed_ns, inode, mode, owner, grp, link_target, encoding, stored_size "
        "FROM staged_contents WHERE run_id=?"));
    for (const QVariant& value : {QVariant(m_generation), QVariant(m_sequence), QVariant(OpenEnd), QVariant(runId)})
        q.addBindValue(value);
    if (!q.exec())
        return m_db.fail(
            QStringLiteral("Cannot record the content of the restore point: %1").arg(q.lastError().text()));
    return true;
}

} // namespace NVB::Engine
