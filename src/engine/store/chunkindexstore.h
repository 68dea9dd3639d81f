#pragma once

#include <memory>

#include <QSet>
#include <QString>
#include <QUuid>
#include <QVector>

#include "repository/packresult.h"

class QSqlQuery;

namespace NVB::Engine {

class StoreDatabase;

// The engine's cache of the new format's chunk index: `chunk_index_objects`
// (the index objects of a generation already read) and `chunk_index` (each
// chunk id and the pack that holds it). The index objects on the storage stay
// the authority; the cache spares a run from reading all of them, and its
// look-ups keep the run's memory bounded by the run's own work rather than
// by the generation's size. Used on a run's worker, on its own connection.
class ChunkIndexStore
{
public:
    explicit ChunkIndexStore(StoreDatabase& database);
    ~ChunkIndexStore();

    QSet<QString> objects(const QUuid& generation);
    // Records an index object and the chunks of the packs it names.
    bool add(const QUuid& generation, const QString& object, const QVector<PackSummary>& packs);
    bool contains(const QUuid& generation, const QByteArray& id);
    // Those of `ids` the cache holds, asked a few hundred at a time: a run
    // checks a whole folder's unchanged files at once instead of paying a
    // statement per chunk. False when the store fails (`found` is then not
    // to be trusted).
    bool containing(const QUuid& generation, const QVector<QByteArray>& ids, QSet<QByteArray>* found);
    // The packs the cached index names.
    QSet<QString> packs(const QUuid& generation);
    // Drops the generation's cache: it is gone, or the storage no longer
    // agrees with it.
    bool forget(const QUuid& generation);

private:
    const QString& generationKey(const QUuid& generation);

    StoreDatabase& m_db;
    std::unique_ptr<QSqlQuery> m_lookup;
    std::unique_ptr<QSqlQuery> m_batchLookup;
    QUuid m_lookupUuid;
    QString m_lookupGeneration; // its text, made once rather than per look-up
};

} // namespace NVB::Engine
