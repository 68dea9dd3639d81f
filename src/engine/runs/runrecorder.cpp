#include "runrecorder.h"

#include <QLocale>

#include "records/plan/planresult.h"
#include "records/plan/planstatus.h"
#include "store/runstore.h"
#include "store/storedatabase.h"

namespace NVB::Engine {

using NVB::Info::Plan::PlanResult;
using NVB::Info::Plan::PlanStatus;

void RunRecorder::record(const QString& storeFile, const ActiveRun& active, RunOutcome* outcome)
{
    RunRecord run = active.run;
    const qint64 seconds = active.clock.elapsed() / 1000;
    StoredPlan summary = active.plan;
    summary.status = PlanStatus::Idle;
    summary.lastRunUtc = active.run.startUtc;
    summary.lastDuration = seconds;
    summary.lastFileCount = outcome->totals.scannedCount;
    summary.lastFileSize = outcome->totals.scannedSize;
    summary.lastUploadedCount = outcome->totals.copiedCount;
    summary.lastUploadedSize = outcome->totals.copiedSize;
    summary.lastFailedCount = outcome->totals.failedCount;

    // A stopped or failed backup leaves no restore point: it would promise
    // files that were never copied.
    const bool keepsPoint = active.makesPoint
        && (outcome->planResult == PlanResult::Success || outcome->planResult == PlanResult::Warning);
    StoredRestorePoint point = active.point;
    point.status = outcome->planResult == PlanResult::Warning ? 1 : 0;
    point.sizeOnStorage = outcome->totals.copiedSize;
    QString message = outcome->message;
    qint64 runSize = outcome->totals.copiedSize;
    if (outcome->bytesStored >= 0 && keepsPoint) {
        // What deduplication saved, in the plan summary and the history:
        // the uploaded size is what reached the storage.
        const QLocale c = QLocale::c();
        const QString figures
            = QStringLiteral("Read %1, new %2, stored %3")
                  .arg(c.formattedDataSize(outcome->bytesRead), c.formattedDataSize(outcome->bytesNew),
                      c.formattedDataSize(outcome->bytesStored));
        message = message.isEmpty() ? figures : QStringLiteral("%1 (%2)").arg(message, figures);
        summary.lastUploadedSize = outcome->bytesStored;
        point.sizeOnStorage = outcome->bytesStored;
        runSize = outcome->bytesStored;
    }

    StoreDatabase database;
    QString error;
    if (database.open(storeFile)) {
        const auto attempt = [&](int result, const QString& message, bool withPoint) {
            run.result = result;
            run.durationSeconds = seconds;
            run.size = runSize;
            run.fileCount = outcome->totals.copiedCount;
            run.errorMessage = message;
            summary.lastResult = result;
            summary.lastMessage = message;
            qint64 row = 0;
            const StoredBunch* bunch = withPoint ? &active.bunch : nullptr;
            const StoredRestorePoint* made = withPoint ? &point : nullptr;
            const bool ok = outcome->changes
                ? RunStore(database).finishRun(run, outcome->files, summary, bunch, made, *outcome->changes, &row)
                : RunStore(database).finishRun(run, outcome->files, summary, bunch, made, outcome->content, &row);
            point.rowId = row;
            return ok;
        };
        if (attempt(outcome->planResult, message, keepsPoint)) {
            outcome->recorded = true;
            outcome->runId = run.id;
            outcome->pointRowId = keepsPoint ? point.rowId : 0;
            return;
        }
        error = database.lastError();
        if (keepsPoint) {
            // A restore point that could not be committed is a failed run,
            // and says so.
            outcome->planResult = PlanResult::Failed;
            outcome->message = QStringLiteral("The restore point could not be recorded: %1").arg(error);
            if (attempt(outcome->planResult, outcome->message, false)) {
                outcome->recorded = true;
                return;
            }
            error = database.lastError();
        }
    } else {
        error = database.lastError();
    }
    outcome->planResult = PlanResult::Failed;
    outcome->recordError = error.isEmpty() ? QStringLiteral("unknown") : error;
}

} // namespace NVB::Engine
