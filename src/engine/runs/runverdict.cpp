#include "runverdict.h"

#include "records/plan/planresult.h"

namespace NVB::Engine {

using NVB::Info::Plan::PlanResult;

int RunVerdict::judge(
    const RunProgress& totals, const QString& storageError, bool stopped, int unsteadyCount, QString* message)
{
    const qint64 stored = totals.scannedCount - totals.failedCount;
    if (!storageError.isEmpty()) {
        *message = storageError;
        return PlanResult::Failed;
    }
    if (stopped) {
        *message = QStringLiteral("The run was stopped");
        return PlanResult::Interrupted;
    }
    if (totals.scannedCount == 0 && totals.failedCount == 0) {
        *message = QStringLiteral("The selection holds no files to back up");
        return PlanResult::Warning;
    }
    // A run that stored nothing it was asked to store leaves no point.
    if (stored <= 0) {
        if (message->isEmpty())
            *message = QStringLiteral("None of the files could be backed up");
        return PlanResult::Failed;
    }
    if (totals.failedCount > 0 || unsteadyCount > 0) {
        if (message->isEmpty())
            *message = QStringLiteral("%1 files could not be backed up").arg(totals.failedCount);
        return PlanResult::Warning;
    }
    return PlanResult::Success;
}

} // namespace NVB::Engine
