#include "plansubtype.h"

namespace NVB::Info::Plan {

PlanSubType::PlanSubType(SubType type)
    : m_type(type)
{ }

QString PlanSubType::displayName() const
{
    return subtypeToStr.value(m_type, subtypeToStr.value(SubType::Unknown));
}

} // namespace NVB::Info::Plan
