#include "retentionjob.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>

#include <QFile>
#include <QSet>

#include "blocks/blockstore.h"
#include "blocks/incrementheader.h"
#include "core/bytename.h"
#include "retentionplanner.h"
#include "runs/folderhandle.h"
#include "runs/objectencoding.h"
#include "store/repositorystore.h"
#include "store/restorepointremoval.h"
#include "store/storedatabase.h"

namespace NVB::Engine {

RetentionJob::Result RetentionJob::apply(const QString& storeFile, const QUuid& connectionId, const QUuid& bunchId,
    const QString& storageRoot, const RetentionRules& rules, const QDateTime& now)
{
    Result result;
    if (rules.isEmpty())
        return result;
    StoreDatabase database;
    if (!database.open(storeFile)) {
        result.error = database.lastError();
        return result;
    }
    RepositoryStore repository(database);
    QList<RetentionPlanner::Point> points;
    for (const StoredRestorePoint& point : repository.restorePoints(connectionId, bunchId))
        points.append({point, repository.content(point.rowId)});
    std::stable_sort(points.begin(), points.end(), [](const auto& a, const auto& b) {
        return a.point.startUtc != b.point.startUtc ? a.point.startUtc < b.point.startUtc
                                                    : a.point.rowId < b.point.rowId;
    });
    QString error;
    const FolderHandle storage = FolderHandle::openAbsolute(QFile::encodeName(storageRoot), &error);
    // Which full version each block increment applies to, from the
    // increments' own headers.
    QHash<QString, QString> baseOf;
    for (const RetentionPlanner::Point& entry : std::as_const(points)) {
        for (const StoredContent& item : entry.content) {
            if (!storage.isValid() || !isIncrement(item.encoding) || baseOf.contains(item.object))
                continue;
            QString unreadable;
            const auto header = IncrementHeader::ofObject(storage, item.object, &unreadable);
            if (header)
                baseOf.insert(item.object, header->baseObject);
        }
    }
    const RetentionPlanner::Result plan = RetentionPlanner::plan(points, rules, now, baseOf);
    if (plan.objects.isEmpty())
        return result;
    if (!RestorePointRemoval(database).removeFromRestorePoints(plan.pathsByPoint, plan.points)) {
        result.error = database.lastError();
        return result;
    }
    result.versions = plan.versions;
    QSet<QUuid> emptied;
    for (const RetentionPlanner::Point& entry : points) {
        if (plan.points.contains(entry.point.rowId)) {
            result.points.append(entry.point);
            emptied.insert(entry.point.generationId);
        }
    }
    // A generation without points is of no use to anyone; its objects went
    // with the versions above. The newest point's generation is never empty.
    for (const QUuid& generation : std::as_const(emptied)) {
        if (repository.restorePoints(connectionId, bunchId, generation).isEmpty()
            && RestorePointRemoval(database).removeGeneration(generation))
            result.generations.append(generation);
    }

    if (!storage.isValid()) {
        result.error = QStringLiteral("The expired objects stay on the storage: %1").arg(error);
        return result;
    }
    for (const QString& object : plan.objects) {
        const QByteArray relative = NVL::ByteName::encode(object);
        // Objects are named by the engine; anything else is not ours to delete.
        if (!FolderHandle::isPlainRelative(relative))
            continue;
        if (::unlinkat(storage.fd(), relative.constData(), 0) != 0 && errno != ENOENT && result.error.isEmpty())
            result.error = QStringLiteral("Cannot delete the expired object %1").arg(object);
    }
    BlockStore(database).forget(plan.objects);
    return result;
}

QList<RunFileRecord> RetentionJob::history(
    const Result& result, const QUuid& planId, const QString& planName, const QDateTime& now)
{
    QList<RunFileRecord> lines;
    // The text is in the file column and the message stays empty: the
    // history shows a message as a warning, and a removal the policy asked
    // for is none.
    const auto line = [&](const QString& what) {
        RunFileRecord record;
        record.planId = planId;
        record.planName = planName;
        record.file = QStringLiteral("Removed by the retention policy: %1").arg(what);
        record.operation = RunFileRecord::Removed;
        record.finishUtc = now;
        lines.append(record);
    };
    for (const StoredRestorePoint& point : result.points)
        line(QStringLiteral("restore point of %1 (generation %2, point %3)")
                 .arg(point.startUtc.toString(Qt::ISODate), point.generationId.toString(QUuid::WithoutBraces))
                 .arg(point.sequenceNumber));
    for (const QUuid& generation : result.generations)
        line(QStringLiteral("generation %1, no restore point left in it")
                 .arg(generation.toString(QUuid::WithoutBraces)));
    return lines;
}

} // namespace NVB::Engine
