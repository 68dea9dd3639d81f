#include "repositorypruner.h"

#include <QHash>
#include <QSet>

#include "repository/packreader.h"
#include "repository/packwriter.h"
#include "repository/repository.h"
#include "storage/storagedriver.h"

namespace NVB::Engine {

namespace {

// "<sequence>-<run>" of an index key: the sequence that keeps the point
// indexed for tidying.
int sequenceOf(const QString& key)
{
    const QString name = key.mid(key.lastIndexOf(QLatin1Char('/')) + 1);
    return name.left(name.indexOf(QLatin1Char('-'))).toInt();
}

} // namespace

RepositoryPruner::Result RepositoryPruner::prune(Repository& repository, const QUuid& generation,
    const ChunkTransform& transform, const ChunkIdentifier& identifier, qint64 packSize)
{
    Result result;
    StorageDriver* driver = repository.driver();
    const QList<int> points = repository.points(generation, &result.error);
    if (!result.error.isEmpty())
        return result;
    QSet<QByteArray> named;
    for (int sequence : points) {
        const PointTree tree = repository.readTree(generation, sequence, transform, &result.error);
        // Never drop a chunk on a partial view of what points need.
        if (!result.error.isEmpty())
            return result;
        for (const TreeEntry& entry : tree.entries) {
            for (const QByteArray& id : entry.chunks)
                named.insert(id);
        }
    }

    const QStringList indexKeys = repository.indexKeys(generation, &result.error);
    if (!result.error.isEmpty())
        return result;
    QHash<QString, QVector<PackSummary>> byIndex;
    for (const QString& key : indexKeys) {
        QVector<PackSummary> packs;
        result.error = repository.readIndexObject(key, transform, &packs);
        if (!result.error.isEmpty())
            return result;
        byIndex.insert(key, packs);
    }

    // Decide per pack: kept, dropped, or repacked.
    QSet<QString> dropped;
    QVector<PackSummary> repack;
    QSet<QString> queued;
    for (auto it = byIndex.cbegin(); it != byIndex.cend(); ++it) {
        for (const PackSummary& pack : it.value()) {
            qint64 live = 0;
            qint64 dead = 0;
            for (const PackEntry& entry : pack.entries)
                (named.contains(entry.id) ? live : dead) += entry.length;
            if (dead == 0 || dropped.contains(pack.key) || queued.contains(pack.key))
                continue;
            if (live == 0)
                dropped.insert(pack.key);
            else if (double(dead) > RepackShare * double(live + dead)) {
                repack.append(pack);
                queued.insert(pack.key);
            }
        }
    }

    PackWriter writer(
        driver, &transform, repository.packFolder(generation), packSize > 0 ? packSize : PackWriter::DefaultTargetSize);
    const PackReader reader(driver, &transform, &identifier);
    QStringList repacked;
    QSet<QByteArray> moved;
    for (const PackSummary& pack : std::as_const(repack)) {
        bool whole = true;
        QVector<QPair<QByteArray, QByteArray>> chunks;
        for (const PackEntry& entry : pack.entries) {
            if (!named.contains(entry.id) || moved.contains(entry.id))
                continue;
            const ChunkData chunk = reader.readChunk(pack.key, entry);
            if (!chunk.ok()) {
                whole = false; // a damaged pack stays for a verify to name
                break;
            }
            chunks.append({entry.id, chunk.data});
        }
        if (!whole)
            continue;
        for (const auto& chunk : std::as_const(chunks)) {
            const StorageStatus added = writer.add(chunk.first, chunk.second);
            if (!added.ok()) {
                result.error = added.error;
                return result;
            }
            moved.insert(chunk.first);
        }
        repacked.append(pack.key);
        dropped.insert(pack.key);
    }
    if (dropped.isEmpty())
        return result;
    const StorageStatus flushed = writer.flush();
    if (!flushed.ok()) {
        result.error = flushed.error;
        return result;
    }
    const QVector<PackSummary> written = writer.takeWrittenPacks();
    const int newest = points.isEmpty() ? 0 : *std::max_element(points.cbegin(), points.cend());
    if (!written.isEmpty()) {
        const QString run = QStringLiteral("prune-") + QUuid::createUuid().toString(QUuid::WithoutBraces);
        const StorageStatus status = repository.writeIndex(generation, newest, run, written, transform);
        if (!status.ok()) {
            result.error = status.error;
            return result;
        }
    }

    // New names, never rewrites in place: the engine's store caches index
    // objects by name and drops its cache when a name it knows is gone.
    const QSet<int> living(points.cbegin(), points.cend());
    for (auto it = byIndex.cbegin(); it != byIndex.cend(); ++it) {
        QVector<PackSummary> kept;
        for (const PackSummary& pack : it.value()) {
            if (!dropped.contains(pack.key))
                kept.append(pack);
        }
        if (kept.size() == it.value().size())
            continue;
        const int sequence = sequenceOf(it.key());
        if (!kept.isEmpty() || living.contains(sequence)) {
            const StorageStatus status = repository.writeIndex(
                generation, sequence, QUuid::createUuid().toString(QUuid::WithoutBraces), kept, transform);
            if (!status.ok()) {
                result.error = status.error;
                return result;
            }
        }
        const StorageStatus removed = driver->remove(it.key());
        if (!removed.ok()) {
            result.error = removed.error;
            return result;
        }
    }
    for (const QString& key : std::as_const(dropped)) {
        const StorageStat stat = driver->stat(key);
        const StorageStatus removed = driver->remove(key);
        if (!removed.ok()) {
            result.error = removed.error; // the next run's tidying removes it
            return result;
        }
        result.freedBytes += stat.ok() ? stat.size : 0;
        result.removedPacks.append(key);
    }
    result.removedPacks.sort();
    result.repackedPacks = repacked;
    return result;
}

} // namespace NVB::Engine
