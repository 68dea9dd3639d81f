#include "runretention.h"

#include "archive/archiveretentionjob.h"
#include "core/nvldebug.h"
#include "retention/retentionjob.h"
#include "store/runstore.h"
#include "store/storedatabase.h"

namespace NVB::Engine {

std::function<void(const QString& storeFile, RunOutcome* outcome)> RunRetention::afterPoint(const RetentionRules& rules,
    bool archive, const QUuid& connection, const QUuid& bunch, const QString& planName, const QString& storageRoot,
    const QString& repositoryRoot, const QString& password)
{
    ArchiveRetentionJob::Parameters archived;
    if (archive) {
        archived.connectionId = connection;
        archived.bunchId = bunch;
        archived.storageRoot = storageRoot;
        archived.repositoryRoot = repositoryRoot;
        archived.password = password;
        archived.rules = rules;
    }
    return [rules, archive, archived, connection, bunch, planName, root = storageRoot](
               const QString& storeFile, RunOutcome* outcome) {
        const QDateTime now = QDateTime::currentDateTimeUtc();
        RetentionJob::Result pruned;
        if (archive) {
            ArchiveRetentionJob::Parameters parameters = archived;
            parameters.storeFile = storeFile;
            parameters.now = now;
            pruned = ArchiveRetentionJob::apply(parameters);
        } else {
            pruned = RetentionJob::apply(storeFile, connection, bunch, root, rules, now);
        }
        NVL::NvlDebug log(QStringLiteral("NVB"));
        if (!pruned.error.isEmpty())
            log.warning() << QStringLiteral("Retention of the plan %1: %2").arg(bunch.toString(), pruned.error);
        else if (pruned.versions > 0)
            log.info() << QStringLiteral("Retention of the plan %1 removed %2 versions and %3 restore points")
                              .arg(bunch.toString())
                              .arg(pruned.versions)
                              .arg(pruned.points.size());
        outcome->prunedPoints = pruned.points;
        outcome->prunedGenerations = pruned.generations;
        StoreDatabase database;
        if (database.open(storeFile)
            && !RunStore(database).addRunFiles(outcome->runId, RetentionJob::history(pruned, bunch, planName, now)))
            log.warning() << QStringLiteral("The retention of the plan %1 is not in the history: %2")
                                 .arg(bunch.toString(), database.lastError());
    };
}

} // namespace NVB::Engine
