#pragma once

#include <QString>

namespace NVB::Info::Plan {

// The outcome of a plan's last run, as the engine reports it in LastRunStatus
// and in the history. Values outside Value are kept as they are and shown as
// unknown, so a newer engine never breaks a table.
class PlanResult
{
public:
    enum Value {
        NoResult = -1,
        NotStarted = 0,
        Starting = 1,
        // The history shows no finish time for a run in this state: it is
        // the value of a run under way.
        Running = 2,
        Completed = 3,
        Stopping = 4,
        Interrupted = 5,
        Success = 6,
        Warning = 7,
        Failed = 8,
        Queued = 9,
        Missed = 10,
        Skipped = 11,
        Canceled = 12,
        Deferred = 13,
        Synchronizing = 100,
        CheckingConsistency = 101,
        Purging = 102
    };

    PlanResult(int value = NoResult);
    PlanResult(Value value);

    int value() const { return m_value; }
    bool isKnown() const;
    QString displayName() const;

    bool operator==(const PlanResult& other) const { return m_value == other.m_value; }
    bool operator!=(const PlanResult& other) const { return m_value != other.m_value; }

private:
    int m_value;
};

} // namespace NVB::Info::Plan
