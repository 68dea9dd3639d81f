#pragma once

#include <QDateTime>

namespace NVB::Info::Plan {
class Schedule;
}

namespace NVB::Engine {

// When a schedule next fires. Schedules speak of the machine's local time;
// the answers are in local time too and invalid when the schedule never fires
// again (disabled, a single run in the past, nothing that matches within ten
// years).
//
// Daylight saving: a time the clock skips (spring forward) runs at the first
// minute after the gap; a time the clock passes twice (fall back) runs once,
// at its first occurrence.
//
// An every-N-minutes window whose end lies before its start (22:00 to 02:00)
// runs through midnight; its times after midnight belong to the run day. A
// day of the month the month lacks (the 31st in April) is its last day.
class ScheduleCalculator
{
public:
    static QDateTime nextRun(const NVB::Info::Plan::Schedule& schedule, const QDateTime& after);

    // The instant a local wall-clock time on a day means, with the rules above.
    static QDateTime localInstant(const QDate& day, const QTime& time);

private:
    static bool isRunDay(const NVB::Info::Plan::Schedule& schedule, const QDate& day);
    static QDateTime firstTimeOnDay(const NVB::Info::Plan::Schedule& schedule, const QDate& day,
                                    const QDateTime& after);
};

} // namespace NVB::Engine
