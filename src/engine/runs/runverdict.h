#pragma once

#include <QString>

#include "runprogress.h"

namespace NVB::Engine {

// How a backup's walk ended, as a plan result and its message; shared by
// both backup formats so that they judge a run alike.
class RunVerdict
{
public:
    // `storageError`: the storage refused a write; `stopped`: by the user;
    // `unsteadyCount`: files kept or skipped although they changed while
    // read. `message` keeps a reason already given where one fits.
    static int judge(
        const RunProgress& totals, const QString& storageError, bool stopped, int unsteadyCount, QString* message);
};

} // namespace NVB::Engine
