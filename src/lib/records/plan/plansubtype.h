#pragma once

#include <QString>

#include "records/plan/planenums.h"

namespace NVB::Info::Plan {

// The content kind of a plan as a value that tables can compare.
class PlanSubType
{
public:
    PlanSubType(SubType type = SubType::Unknown);

    SubType type() const { return m_type; }
    QString displayName() const;

    bool operator==(const PlanSubType& other) const { return m_type == other.m_type; }
    bool operator!=(const PlanSubType& other) const { return m_type != other.m_type; }

private:
    SubType m_type;
};

} // namespace NVB::Info::Plan
