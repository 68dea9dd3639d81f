#pragma once

#include <QString>
#include <QUuid>

#include "records/plan/planresult.h"
#include "records/plan/planstatus.h"
#include "records/plan/plansubtype.h"

namespace NVB::Info::Plan {

// One entry of a list of plans: enough to show and follow a plan without
// reading its whole record.
class PlanObject
{
public:
    PlanObject() = default;
    PlanObject(const QUuid& id, const QString& displayName, const PlanStatus& status, const PlanResult& lastRunStatus,
        const PlanSubType& subType);

    QUuid id() const { return m_id; }
    void setId(const QUuid& id) { m_id = id; }
    QString displayName() const { return m_displayName; }
    void setDisplayName(const QString& name) { m_displayName = name; }
    PlanStatus status() const { return m_status; }
    void setStatus(const PlanStatus& status) { m_status = status; }
    PlanResult lastRunStatus() const { return m_lastRunStatus; }
    void setLastRunStatus(const PlanResult& result) { m_lastRunStatus = result; }
    PlanSubType subType() const { return m_subType; }
    void setSubType(const PlanSubType& subType) { m_subType = subType; }

private:
    QUuid m_id;
    QString m_displayName;
    PlanStatus m_status;
    PlanResult m_lastRunStatus;
    PlanSubType m_subType;
};

} // namespace NVB::Info::Plan
