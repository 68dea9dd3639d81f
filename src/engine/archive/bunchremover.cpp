#include "bunchremover.h"

#include <QDir>

#include "runs/accountfolder.h"
#include "storage/filesystemdriver.h"
#include "store/enginestore.h"

namespace NVB::Engine {

BunchRemover::Result BunchRemover::remove(EngineStore* store, const QUuid& connectionId, const QUuid& bunchId)
{
    Result result;
    if (!store->bunch(connectionId, bunchId)) {
        result.error
            = QStringLiteral("There is no backup %1 on that storage").arg(bunchId.toString(QUuid::WithoutBraces));
        return result;
    }
    QString prefix;
    const QString folder = AccountFolder::prepare(store, connectionId, &prefix, &result.error);
    if (folder.isEmpty())
        return result;
    FileSystemDriver driver(QDir::cleanPath(folder));
    // Both formats keep everything of a plan below this one folder.
    const QString plan = QStringLiteral("NVB_%1/%2").arg(prefix, bunchId.toString(QUuid::WithoutBraces));
    const StorageListing listing = driver.list(plan);
    result.error = listing.error;
    for (const StorageObjectInfo& object : listing.objects) {
        if (!result.error.isEmpty())
            break;
        result.error = driver.remove(object.key).error;
    }
    if (!result.error.isEmpty()) {
        result.error = QStringLiteral("The backup's data cannot be deleted: %1").arg(result.error);
        return result;
    }
    // Empty folders left behind would show as a backup with no data.
    QDir(QDir::cleanPath(folder) + QLatin1Char('/') + plan).removeRecursively();
    for (const StoredGeneration& generation : store->generations(connectionId, bunchId))
        result.generations.append(generation.id);
    result.points = store->restorePoints(connectionId, bunchId);
    if (!store->removeBunch(connectionId, bunchId)) {
        result.generations.clear();
        result.points.clear();
        result.error = store->lastError();
    }
    return result;
}

} // namespace NVB::Engine
