#include "progressfigures.h"

#include <QtGlobal>

namespace NVB::Engine {

ProgressFigures ProgressFigures::of(const RunProgress& progress)
{
    ProgressFigures figures;
    figures.doneCount = progress.scannedCount;
    figures.doneSize = progress.scannedSize;
    if (!progress.scanning) {
        figures.percent = 100;
        figures.msLeft = figures.secondsLeft = 0;
    } else if (progress.totalSize > 0) {
        // Files grow while they are read, so the count can run past the
        // total; 100 is kept for the end of the run.
        figures.percent = int(qBound<qint64>(0, progress.scannedSize * 100 / progress.totalSize, 99));
    } else if (progress.totalCount > 0) {
        figures.percent = int(qBound<qint64>(0, progress.scannedCount * 100 / progress.totalCount, 99));
    } else if (progress.totalCount == 0) {
        figures.percent = 0;
    }
    // Speed and time left over the copy alone: the counting pass before it
    // moves no data and would make the first estimates far too long.
    const qint64 transferMs = progress.elapsedMs - progress.transferStartMs;
    if (progress.totalCount >= 0 && transferMs > 0) {
        figures.bytesPerSecond = progress.scannedSize * 1000 / transferMs;
        if (progress.scanning && progress.scannedSize > 0 && progress.totalSize >= 0) {
            const qint64 left = qMax<qint64>(0, progress.totalSize - progress.scannedSize);
            figures.msLeft = qint64(double(left) * double(transferMs) / double(progress.scannedSize));
            figures.secondsLeft = (figures.msLeft + 999) / 1000;
        }
    }
    return figures;
}

} // namespace NVB::Engine
