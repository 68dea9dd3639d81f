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
};

} // namespace NVB::Engine
