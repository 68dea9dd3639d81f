#include "retentionjob.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>

#include <QFile>

#include "core/bytename.h"
#include "retentionplanner.h"
#include "runs/folderhandle.h"
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
    const RetentionPlanner::Result plan = RetentionPlanner::plan(points, rules, now);
    if (plan.objects.isEmpty())
        return result;
    if (!RestorePointRemoval(database).removeFromRestorePoints(plan.pathsByPoint, plan.points)) {
        result.error = database.lastError();
        return result;
    }
    result.versions = plan.versions;
    for (const RetentionPlanner::Point& entry : points) {
        if (plan.points.contains(entry.point.rowId))
            result.points.append(entry.point);
    }

    QString error;
    const FolderHandle storage = FolderHandle::openAbsolute(QFile::encodeName(storageRoot), &error);
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
    return result;
}

} // namespace NVB::Engine
