#pragma once

#include <QList>

#include "store/storedrestorepoint.h"

namespace NVB::Info::Plan {
class Backup;
}

namespace NVB::Engine {

// Whether a backup's next run is a full one because of how much changed:
// the plan's "% of last full" condition holds when the data stored by the
// incremental runs since the last full backup reaches that share of the
// full backup's own size.
class FullBackupRule
{
public:
    // `points` are the plan's restore points on its storage, in any order.
    static bool sizeConditionMet(const NVB::Info::Plan::Backup& plan, const QList<StoredRestorePoint>& points);
};

} // namespace NVB::Engine
