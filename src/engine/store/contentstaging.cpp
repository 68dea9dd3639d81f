#include "contentstaging.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include "storedatabase.h"
#include "storevalues.h"

namespace NVB::Engine {

using namespace StoreValues;

ContentStaging::ContentStaging(StoreDatabase& database, qint64 runId)
    : m_db(database)
    , m_runId(runId)
{ }

ContentStaging::~ContentStaging() = default;

bool ContentStaging::add(const QList<StoredContent>& batch)
{
    return m_db.transaction([&] {
        if (!m_insert) {
            m_insert = std::make_unique<QSqlQuery>(m_db.database());
            if (!m_insert->prepare(QStringLiteral(
                    "INSERT OR REPLACE INTO staged_contents(run_id, path, parent, name, type, modified_utc, size, "
                    "deleted, object, checksum, modified_ns, changed_ns, inode, mode, owner, grp, link_target, "
                    "encoding, stored_size) VALUES(?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)"))) {
                const QString error = m_insert->lastError().text();
                m_insert.reset();
                return m_db.fail(QStringLiteral("Cannot stage the run's entries: %1").arg(error));
            }
        }
        QSqlQuery& q = *m_insert;
        const QVariant run(m_runId);
        for (const StoredContent& item : batch) {
            int column = 0;
            for (const QVariant& value : {run, str(item.path), str(item.parentPath()), str(item.name()),
                     QVariant(item.type), stamp(item.modifiedUtc), QVariant(item.size), QVariant(item.deleted),
                     str(item.object), QVariant(item.checksum.isNull() ? QByteArray("") : item.checksum),
                     QVariant(item.modifiedNs), QVariant(item.changedNs), QVariant(qint64(item.inode)),
                     QVariant(qint64(item.mode)), QVariant(item.owner), QVariant(item.group), str(item.linkTarget),
                     QVariant(item.encoding), QVariant(item.storedSize)})
                q.bindValue(column++, value);
            if (!q.exec())
                return m_db.fail(QStringLiteral("Cannot stage the run's entries: %1").arg(q.lastError().text()));
        }
        m_count += batch.size();
        return true;
    });
}

bool ContentStaging::forEachBatch(
    StoreDatabase& database, qint64 runId, const std::function<void(const QList<StoredContent>&)>& take)
{
    QSqlQuery q(database.database());
    if (!q.prepare(QStringLiteral("SELECT path, type, size, deleted, object, stored_size, encoding FROM staged_contents "
                                  "WHERE run_id = ? AND path > ? ORDER BY path LIMIT 4096")))
        return database.fail(QStringLiteral("Cannot read the run's staged entries: %1").arg(q.lastError().text()));
    QString after(QLatin1String(""));
    for (;;) {
        q.bindValue(0, runId);
        q.bindValue(1, after);
        if (!q.exec())
            return database.fail(QStringLiteral("Cannot read the run's staged entries: %1").arg(q.lastError().text()));
        QList<StoredContent> batch;
        while (q.next()) {
            StoredContent item;
            item.path = q.value(0).toString();
            item.type = q.value(1).toInt();
            item.size = q.value(2).toLongLong();
            item.deleted = q.value(3).toBool();
            item.object = q.value(4).toString();
            item.storedSize = q.value(5).toLongLong();
            item.encoding = q.value(6).toInt();
            batch.append(item);
        }
        if (batch.isEmpty())
            return true;
        after = batch.constLast().path;
        take(batch);
    }
}

} // namespace NVB::Engine
