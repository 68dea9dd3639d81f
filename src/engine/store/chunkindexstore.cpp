#include "chunkindexstore.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include "storedatabase.h"

namespace NVB::Engine {

namespace {

// Ids per batched look-up: well under SQLite's bound on a statement's
// parameters, large enough that a folder of small files takes one or two.
constexpr int LookupBatch = 256;

QString key(const QUuid& generation)
{
    return generation.toString(QUuid::WithoutBraces);
}

} // namespace

ChunkIndexStore::ChunkIndexStore(StoreDatabase& database)
    : m_db(database)
{ }

ChunkIndexStore::~ChunkIndexStore() = default;

QSet<QString> ChunkIndexStore::objects(const QUuid& generation)
{
    QSet<QString> result;
    QSqlQuery q(m_db.database());
    q.prepare(QStringLiteral("SELECT object_key FROM chunk_index_objects WHERE generation_id=?"));
    q.addBindValue(key(generation));
    if (q.exec()) {
        while (q.next())
            result.insert(q.value(0).toString());
    }
    return result;
}

bool ChunkIndexStore::add(const QUuid& generation, const QString& object, const QVector<PackSummary>& packs)
{
    return m_db.transaction([&] {
        QSqlQuery q(m_db.database());
        q.prepare(QStringLiteral("INSERT OR IGNORE INTO chunk_index_objects(generation_id, object_key) VALUES(?,?)"));
        q.addBindValue(key(generation));
        q.addBindValue(object);
        if (!q.exec())
            return m_db.fail(q.lastError().text());
        QSqlQuery chunk(m_db.database());
        chunk.prepare(
            QStringLiteral("INSERT OR IGNORE INTO chunk_index(generation_id, chunk_id, pack_key) VALUES(?,?,?)"));
        for (const PackSummary& pack : packs) {
            for (const PackEntry& entry : pack.entries) {
                chunk.bindValue(0, key(generation));
                chunk.bindValue(1, entry.id);
                chunk.bindValue(2, pack.key);
                if (!chunk.exec())
                    return m_db.fail(chunk.lastError().text());
            }
        }
        return true;
    });
}

bool ChunkIndexStore::contains(const QUuid& generation, const QByteArray& id)
{
    if (!m_lookup) {
        m_lookup = std::make_unique<QSqlQuery>(m_db.database());
        m_lookup->prepare(QStringLiteral("SELECT 1 FROM chunk_index WHERE generation_id=? AND chunk_id=?"));
    }
    m_lookup->bindValue(0, generationKey(generation));
    m_lookup->bindValue(1, id);
    const bool found = m_lookup->exec() && m_lookup->next();
    m_lookup->finish();
    return found;
}

bool ChunkIndexStore::containing(const QUuid& generation, const QVector<QByteArray>& ids, QSet<QByteArray>* found)
{
    if (ids.isEmpty())
        return true;
    if (!m_batchLookup) {
        QString marks = QStringLiteral("?");
        for (int i = 1; i < LookupBatch; ++i)
            marks += QStringLiteral(",?");
        m_batchLookup = std::make_unique<QSqlQuery>(m_db.database());
        m_batchLookup->setForwardOnly(true);
        if (!m_batchLookup->prepare(
                QStringLiteral("SELECT chunk_id FROM chunk_index WHERE generation_id=? AND chunk_id IN (%1)")
                    .arg(marks))) {
            m_batchLookup.reset();
            return false;
        }
    }
    QSqlQuery& q = *m_batchLookup;
    q.bindValue(0, generationKey(generation));
    for (int start = 0; start < ids.size(); start += LookupBatch) {
        // A short last batch repeats its first id in the unused places.
        for (int i = 0; i < LookupBatch; ++i) {
            const int at = start + i < ids.size() ? start + i : start;
            q.bindValue(1 + i, ids.at(at));
        }
        if (!q.exec())
            return false;
        while (q.next())
            found->insert(q.value(0).toByteArray());
        q.finish();
    }
    return true;
}

const QString& ChunkIndexStore::generationKey(const QUuid& generation)
{
    if (m_lookupGeneration.isEmpty() || m_lookupUuid != generation) {
        m_lookupUuid = generation;
        m_lookupGeneration = key(generation);
    }
    return m_lookupGeneration;
}

QSet<QString> ChunkIndexStore::packs(const QUuid& generation)
{
    QSet<QString> result;
    QSqlQuery q(m_db.database());
    q.prepare(QStringLiteral("SELECT DISTINCT pack_key FROM chunk_index WHERE generation_id=?"));
    q.addBindValue(key(generation));
    if (q.exec()) {
        while (q.next())
            result.insert(q.value(0).toString());
    }
    return result;
}

bool ChunkIndexStore::forget(const QUuid& generation)
{
    m_lookup.reset();
    m_batchLookup.reset();
    return m_db.transaction([&] {
        for (const char* table : {"chunk_index", "chunk_index_objects"}) {
            QSqlQuery q(m_db.database());
            q.prepare(QStringLiteral("DELETE FROM %1 WHERE generation_id=?").arg(QLatin1String(table)));
            q.addBindValue(key(generation));
            if (!q.exec())
                return m_db.fail(q.lastError().text());
        }
        return true;
    });
}

} // namespace NVB::Engine
