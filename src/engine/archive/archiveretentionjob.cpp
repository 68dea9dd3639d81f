#include "archiveretentionjob.h"

#include <algorithm>
#include <memory>

#include <QSet>

#include "repository/chunktransform.h"
#include "repository/repository.h"
#include "repository/repositorypruner.h"
#include "retention/retentionplanner.h"
#include "storage/filesystemdriver.h"
#include "store/chunkindexstore.h"
#include "store/repositorystore.h"
#include "store/restorepointremoval.h"
#include "store/storedatabase.h"

namespace NVB::Engine {

RetentionJob::Result ArchiveRetentionJob::apply(const Parameters& parameters)
{
    RetentionJob::Result result;
    if (parameters.rules.isEmpty())
        return result;
    StoreDatabase database;
    if (!database.open(parameters.storeFile)) {
        result.error = database.lastError();
        return result;
    }
    std::unique_ptr<StorageDriver> ownDriver;
    StorageDriver* driver = parameters.driver;
    if (!driver) {
        ownDriver = std::make_unique<FileSystemDriver>(parameters.storageRoot);
        driver = ownDriver.get();
    }
    Repository repository(driver, parameters.repositoryRoot);
    RepositoryStore store(database);

    // Every file of a new-format point names the point's tree as its object:
    // the planner is given what a run compares instead (times to the
    // nanosecond, size, checksum) within the generation that stores it, so a
    // file a run kept unread is one version across the points that hold it,
    // and the same file in another generation is another stored copy.
    QList<RetentionPlanner::Point> points;
    for (const StoredRestorePoint& point : store.restorePoints(parameters.connectionId, parameters.bunchId)) {
        RetentionPlanner::Point entry {point, store.content(point.rowId)};
        for (StoredContent& item : entry.content) {
            if (item.type == StoredContent::File)
                item.object = QStringLiteral("%1|%2|%3|%4|%5|%6")
                                  .arg(point.generationId.toString(QUuid::WithoutBraces), item.path)
                                  .arg(item.size)
                                  .arg(item.modifiedNs)
                                  .arg(item.changedNs)
                                  .arg(QString::fromLatin1(item.checksum.toHex()));
        }
        points.append(entry);
    }
    std::stable_sort(points.begin(), points.end(), [](const auto& a, const auto& b) {
        return a.point.startUtc != b.point.startUtc ? a.point.startUtc < b.point.startUtc
                                                    : a.point.rowId < b.point.rowId;
    });
    RetentionPlanner::Result plan = RetentionPlanner::plan(points, parameters.rules, parameters.now);
    if (plan.pathsByPoint.isEmpty() && plan.points.isEmpty())
        return result;

    QHash<qint64, StoredRestorePoint> byRow;
    for (const RetentionPlanner::Point& entry : std::as_const(points))
        byRow.insert(entry.point.rowId, entry.point);
    const QUuid newestGeneration = points.constLast().point.generationId;

    // A tree is trimmed only when its generation opens; a generation of an
    // earlier password keeps its files until its points go whole.
    QHash<QUuid, std::shared_ptr<OpenedGeneration>> opened;
    const auto open = [&](const QUuid& generation) {
        auto& slot = opened[generation];
        if (!slot)
            slot = std::make_shared<OpenedGeneration>(repository.openGeneration(generation, parameters.password));
        return slot;
    };
    for (auto it = plan.pathsByPoint.begin(); it != plan.pathsByPoint.end();) {
        if (!open(byRow.value(it.key()).generationId)->transform)
            it = plan.pathsByPoint.erase(it);
        else
            ++it;
    }
    if (plan.pathsByPoint.isEmpty() && plan.points.isEmpty())
        return result;

    if (!RestorePointRemoval(database).removeFromRestorePoints(plan.pathsByPoint, plan.points)) {
        result.error = database.lastError();
        return result;
    }
    result.versions = plan.versions;
    QSet<QUuid> touched;
    for (qint64 row : std::as_const(plan.points)) {
        result.points.append(byRow.value(row));
        touched.insert(byRow.value(row).generationId);
    }

    const auto fail = [&result](const QString& error) {
        if (result.error.isEmpty())
            result.error = error;
    };
    for (auto it = plan.pathsByPoint.cbegin(); it != plan.pathsByPoint.cend(); ++it) {
        const StoredRestorePoint point = byRow.value(it.key());
        const auto generation = open(point.generationId);
        QString error;
        PointTree tree = repository.readTree(point.generationId, point.sequenceNumber, *generation->transform, &error);
        if (!error.isEmpty()) {
            fail(error);
            continue;
        }
        const QSet<QString> expired(it.value().cbegin(), it.value().cend());
        tree.entries.erase(std::remove_if(tree.entries.begin(), tree.entries.end(),
                               [&expired](const TreeEntry& entry) {
                                   return entry.item.type == StoredContent::File && expired.contains(entry.item.path);
                               }),
            tree.entries.end());
        fail(repository.writeTree(tree, *generation->transform).error);
        touched.insert(point.generationId);
    }
    for (const StoredRestorePoint& point : std::as_const(result.points))
        fail(repository.removeTree(point.generationId, point.sequenceNumber).error);

    ChunkIndexStore cache(database);
    for (const QUuid& generation : std::as_const(touched)) {
        // The cache is read again from the storage's index by the next run.
        cache.forget(generation);
        if (generation != newestGeneration
            && store.restorePoints(parameters.connectionId, parameters.bunchId, generation).isEmpty()) {
            const StorageStatus removed = repository.removeGeneration(generation);
            if (!removed.ok()) {
                fail(removed.error);
                continue;
            }
            RestorePointRemoval(database).removeGeneration(generation);
            result.generations.append(generation);
            continue;
        }
        const auto opening = open(generation);
        if (!opening->transform)
            continue; // an earlier password's chunks wait for the generation to go whole
        const RepositoryPruner::Result pruned = RepositoryPruner::prune(
            repository, generation, *opening->transform, opening->identifier, parameters.packSize);
        fail(pruned.error);
        result.freedBytes += pruned.freedBytes;
        result.removedPacks += pruned.removedPacks.size();
    }
    return result;
}

} // namespace NVB::Engine
