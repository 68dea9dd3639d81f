#pragma once

#include "runs/runprogress.h"

namespace NVB::Engine {

// What a run's counters mean to the one watching: share done, speed and
// time left. The share is of bytes, since one large file outweighs many
// small ones; with no bytes to move it falls back to the file count.
struct ProgressFigures
{
    int percent = -1; // -1 while the total is unknown
    qint64 bytesPerSecond = 0;
    qint64 msLeft = -1; // -1 while it cannot be told
    qint64 secondsLeft = -1; // msLeft rounded up
    qint64 doneSize = 0;
    qint64 doneCount = 0;

    static ProgressFigures of(const RunProgress& progress);
};

} // namespace NVB::Engine
