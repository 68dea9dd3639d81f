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

} // namespace NVB::Engine
