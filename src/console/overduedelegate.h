#pragma once

#include "localtimedelegate.h"

namespace NVB::Console {

// The last run time of a plan, marked in red with "(overdue)" when the plan
// has had no good run for longer than the "PlanOverdueDays" setting: a quiet
// mark in the table instead of an alert.
class OverdueDelegate : public LocalTimeDelegate
{
    Q_OBJECT

public:
    using LocalTimeDelegate::LocalTimeDelegate;

    // Whether a plan last run at `lastRunUtc` is overdue at `nowUtc`. The
    // table knows only the last run: whatever its result, the last good run
    // is no newer, so an old last run is always overdue. A recent failed run
    // after an old good one is not seen here. A plan never run is not marked.
    static bool isOverdue(const QDateTime& lastRunUtc, const QDateTime& nowUtc, int days);
    static int thresholdDays();

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
};

} // namespace NVB::Console
