#pragma once

#include <optional>

#include <QDateTime>
#include <QList>
#include <QUuid>

#include "storedplan.h"

namespace NVB::Engine {

class StoreDatabase;

// The `plans` table: each plan's document, status and last run's summary.
class PlanStore
{
public:
    explicit PlanStore(StoreDatabase& database);

    bool savePlan(const StoredPlan& plan);
    bool removePlan(const QUuid& id);
    std::optional<StoredPlan> plan(const QUuid& id);
    QList<StoredPlan> plans();
    bool setPlanStatus(const QUuid& id, int status);
    bool setLastScheduled(const QUuid& id, const QDateTime& utc);
    QList<QUuid> plansUsingAccount(const QUuid& accountId);
    // Inside a caller's transaction: the status and last run's figures.
    bool writeSummary(const StoredPlan& summary);
    bool setEveryStatus(int status);

private:
    StoreDatabase& m_db;
};

} // namespace NVB::Engine
