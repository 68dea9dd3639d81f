#pragma once

#include <QString>

namespace NVB::Info::Plan {

// Whether a plan is running now; the engine's "State" of a plan.
class PlanStatus
{
public:
    enum Value { Unknown = 0, Running = 1, Idle = 2, Stopping = 3, Disabled = 4 };

    PlanStatus(int value = Unknown);
    PlanStatus(Value value);

    int value() const { return m_value; }
    bool isRunning() const { return m_value == Running; }
    QString displayName() const;

    bool operator==(const PlanStatus& other) const { return m_value == other.m_value; }
    bool operator!=(const PlanStatus& other) const { return m_value != other.m_value; }

private:
    int m_value;
};

} // namespace NVB::Info::Plan
