#pragma once

#include <QString>

namespace NVB::Engine {

// Where a run stands; handed from the run's worker to the engine's thread.
struct RunProgress
{
    QString currentFile;
    qint64 scannedCount = 0;
    qint64 scannedSize = 0;
    qint64 copiedCount = 0;
    qint64 copiedSize = 0;
    qint64 failedCount = 0;
    qint64 elapsedMs = 0;
    bool scanning = true;
    // What the run will take, from the pass made before copying; -1 while
    // that pass runs. `transferStartMs` is when it ended, on the run's clock.
    qint64 totalCount = -1;
    qint64 totalSize = -1;
    qint64 transferStartMs = 0;
};

} // namespace NVB::Engine
