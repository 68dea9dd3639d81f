#include "fullbackuprule.h"

#include "records/plan/backup.h"

namespace NVB::Engine {

bool FullBackupRule::sizeConditionMet(const NVB::Info::Plan::Backup& plan, const QList<StoredRestorePoint>& points)
{
    if (!plan.forceFullDiffSizeConditionEnable() || points.isEmpty())
        return false;
    // The last full backup is the first point of the newest generation.
    const StoredRestorePoint* full = nullptr;
    for (const StoredRestorePoint& point : points) {
        if (point.backupType == 0 && (!full || point.startUtc > full->startUtc))
            full = &point;
    }
    if (!full || full->sizeOnStorage <= 0)
        return false;
    qint64 changed = 0;
    for (const StoredRestorePoint& point : points) {
        if (point.generationId == full->generationId && point.sequenceNumber > full->sequenceNumber)
            changed += point.sizeOnStorage;
    }
    return changed * 100 >= qint64(plan.forceFullDiffSizeCondition()) * full->sizeOnStorage;
}

} // namespace NVB::Engine
