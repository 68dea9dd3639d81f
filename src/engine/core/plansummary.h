#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <QString>

#include "store/storedplan.h"

namespace NVB::Info::Plan {
class Schedule;
}

namespace NVB::Engine {

// The summary of a plan that the plan tables show, keyed as the console reads
// it: the stored state and the next run time the scheduler computed.
class PlanSummary
{
public:
    static QJsonObject toJson(const StoredPlan& plan, const QDateTime& nextRunUtc, const QString& schedule,
                              const QString& fullSchedule, bool forceFullSupported);
    // A schedule as a person reads it: "Daily at 22:30", "No schedule".
    static QString describe(const NVB::Info::Plan::Schedule& schedule);
};

} // namespace NVB::Engine
