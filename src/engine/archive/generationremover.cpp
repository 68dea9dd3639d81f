#include "generationremover.h"

#include <QDir>

#include "repository/repository.h"
#include "runs/accountfolder.h"
#include "storage/filesystemdriver.h"
#include "store/enginestore.h"

namespace NVB::Engine {

GenerationRemover::Result GenerationRemover::remove(
    EngineStore* store, const QUuid& connectionId, const QUuid& bunchId, const QUuid& generationId)
{
    Result result;
    const auto generation = store->generation(generationId);
    if (!generation || generation->bunchId != bunchId || generation->connectionId != connectionId) {
        result.error = QStringLiteral("There is no generation %1 of that backup on that storage")
                           .arg(generationId.toString(QUuid::WithoutBraces));
        return result;
    }
    QString prefix;
    const QString folder = AccountFolder::prepare(store, connectionId, &prefix, &result.error);
    if (folder.isEmpty())
        return result;
    FileSystemDriver driver(QDir::cleanPath(folder));
    const QString plan = QStringLiteral("NVB_%1/%2").arg(prefix, bunchId.toString(QUuid::WithoutBraces));
    Repository repository(&driver, plan + QStringLiteral("/archive"));
    const StorageStat record = driver.stat(repository.generationKey(generationId));
    if (!record.ok()) {
        result.error = record.error;
        return result;
    }
    if (record.exists) {
        result.error = repository.removeGeneration(generationId).error;
    } else {
        // The legacy format keeps a generation below a folder of its own.
        const StorageListing listing
            = driver.list(QStringLiteral("%1/%2").arg(plan, generationId.toString(QUuid::WithoutBraces)));
        result.error = listing.error;
        for (const StorageObjectInfo& object : listing.objects) {
            if (!result.error.isEmpty())
                break;
            result.error = driver.remove(object.key).error;
        }
    }
    if (!result.error.isEmpty()) {
        result.error = QStringLiteral("The generation's data cannot be deleted: %1").arg(result.error);
        return result;
    }
    result.points = store->restorePoints(connectionId, bunchId, generationId);
    if (!store->removeGeneration(generationId)) {
        result.points.clear();
        result.error = store->lastError();
    }
    return result;
}

} // namespace NVB::Engine
