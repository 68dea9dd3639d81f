#include "archiveconsistencycheck.h"

#include "actions/consistencycheck.h"
#include "encryption/objectkey.h"
#include "records/plan/planresult.h"
#include "repository/chunktransform.h"
#include "repository/repository.h"
#include "storage/filesystemdriver.h"

namespace NVB::Engine {

using NVB::Info::Plan::PlanResult;

QStringList ArchiveConsistencyCheck::problems(
    const Repository& repository, const QUuid& generation, const QString& password)
{
    QString error;
    const auto transform = repository.generationTransform(generation, &error, password);
    QStringList keys;
    if (transform)
        keys = repository.indexKeys(generation, &error);
    // One index object at a time: the check holds one run's packs, never
    // the generation's whole index.
    QStringList found;
    for (const QString& key : std::as_const(keys)) {
        QVector<PackSummary> packs;
        error = repository.readIndexObject(key, *transform, &packs);
        if (!error.isEmpty())
            break;
        for (const PackSummary& pack : std::as_const(packs)) {
            qint64 needed = 0;
            for (const PackEntry& entry : pack.entries)
                needed = std::max(needed, entry.offset + entry.length);
            const StorageStat stat = repository.driver()->stat(pack.key);
            if (!stat.ok())
                found << QStringLiteral("%1 (%2)").arg(pack.key, stat.error);
            else if (!stat.exists)
                found << QStringLiteral("%1 (missing)").arg(pack.key);
            else if (stat.size < needed)
                found << QStringLiteral("%1 (%2 bytes, at least %3 recorded)").arg(pack.key).arg(stat.size).arg(needed);
        }
    }
    if (!error.isEmpty())
        return {QStringLiteral("generation %1 (%2)").arg(generation.toString(QUuid::WithoutBraces), error)};
    return found;
}

ArchiveConsistencyCheck::Work ArchiveConsistencyCheck::around(const QString& storageRoot, const QString& repositoryRoot,
    const QUuid& generation, bool everyGeneration, Work work, const QString& password)
{
    return [=, work = std::move(work)](const std::atomic_bool& stop) {
        RunOutcome outcome = work(stop);
        if (outcome.planResult != PlanResult::Success && outcome.planResult != PlanResult::Warning)
            return outcome;
        FileSystemDriver driver(storageRoot);
        const Repository repository(&driver, repositoryRoot);
        QList<QUuid> generations {generation};
        if (everyGeneration) {
            QString error;
            generations = repository.generations(&error);
            if (!error.isEmpty()) {
                ConsistencyCheck::warn(&outcome, {QStringLiteral("%1 (%2)").arg(repositoryRoot, error)});
                return outcome;
            }
        }
        QStringList found;
        for (const QUuid& checked : std::as_const(generations)) {
            if (stop)
                break;
            const QStringList seen = problems(repository, checked, password);
            const bool otherPassword = checked != generation && seen.size() == 1
                && seen.constFirst().contains(ObjectKey::wrongPasswordMessage());
            if (!otherPassword)
                found << seen;
        }
        ConsistencyCheck::warn(&outcome, found);
        return outcome;
    };
}

} // namespace NVB::Engine
