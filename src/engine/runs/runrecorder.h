#pragma once

#include <QString>

#include "activerun.h"

namespace NVB::Engine {

// Writes a run's end to the store: its history row and files, the plan's
// summary and, for a backup that kept its data, the restore point with its
// content, all in one transaction. Runs on the worker, on a connection of
// its own, so a large point never holds up the thread that serves clients.
class RunRecorder
{
public:
    // Sets `outcome->recorded` (and the point's row) when the store took the
    // run; a point that cannot be committed turns the run into a failed one.
    static void record(const QString& storeFile, const ActiveRun& active, RunOutcome* outcome);
};

} // namespace NVB::Engine
