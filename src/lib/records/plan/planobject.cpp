#include "planobject.h"

namespace NVB::Info::Plan {

PlanObject::PlanObject(const QUuid& id, const QString& displayName, const PlanStatus& status,
    const PlanResult& lastRunStatus, const PlanSubType& subType)
    : m_id(id)
    , m_displayName(displayName)
    , m_status(status)
    , m_lastRunStatus(lastRunStatus)
    , m_subType(subType)
{ }

} // namespace NVB::Info::Plan
