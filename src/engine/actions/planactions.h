#pragma once

#include <atomic>
#include <functional>

#include "runs/runoutcome.h"

namespace NVB::Info::Plan {
class Actions;
}

namespace NVB::Engine {

// The commands a backup plan runs around its work, on the run's worker.
//
// Before: a pre-action that fails (cannot start, exits non-zero, outlives
// its limit) ends the run as failed, naming the command and its exit code,
// when the plan asks to exit; else the run goes on and ends with a warning.
// After: the post-action runs after a successful (or warning) backup, and
// after a failed or stopped one too when the plan says "in any case"; its
// failure turns a success into a warning. The result of each command and the
// tail of its output go into the run's message in the history.
class PlanActions
{
public:
    using Work = std::function<RunOutcome(const std::atomic_bool&)>;

    // Seconds a command may run, from the setting "Action time limit".
    static int timeLimitSeconds();

    // The work with the plan's actions around it; the work itself when the
    // plan has none.
    static Work around(const NVB::Info::Plan::Actions& actions, Work work);
};

} // namespace NVB::Engine
