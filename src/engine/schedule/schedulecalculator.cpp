#include "schedulecalculator.h"

#include "records/plan/schedule.h"

namespace NVB::Engine {

using NVB::Info::Plan::Schedule;

namespace {

constexpr int SearchDays = 3660;

// The nth (or penultimate, or last) given weekday of the day's month.
bool isNthWeekday(const QDate& day, Schedule::WeekNumber week, int weekday)
{
    if (day.dayOfWeek() != weekday)
        return false;
    const int index = (day.day() - 1) / 7; // 0 for the first such weekday
    const int remaining = (day.daysInMonth() - day.day()) / 7; // how many more follow
    switch (week) {
    case Schedule::First:
        return index == 0;
    case Schedule::Second:
        return index == 1;
    case Schedule::Third:
        return index == 2;
    case Schedule::Fourth:
        return index == 3;
    case Schedule::Penultimate:
        return remaining == 1;
    case Schedule::Last:
        return remaining == 0;
    }
    return false;
}

bool isRepeatMonth(const Schedule::MonthRepeat& repeat, const QDate& day)
{
    if (!repeat.start.isValid())
        return true;
    if (day < repeat.start)
        return false;
    const int months = (day.year() - repeat.start.year()) * 12 + day.month() - repeat.start.month();
    return repeat.months <= 1 || months % repeat.months == 0;
}

} // namespace

QDateTime ScheduleCalculator::localInstant(const QDate& day, const QTime& time)
{
    QDateTime at(day, time);
    if (!at.isValid()) {
        // The clock skipped this time (spring forward): the run happens at
        // the first minute that exists after the gap, so it is late rather
        // than lost.
        for (int minute = 1; minute <= 24 * 60 && !at.isValid(); ++minute) {
            const QTime later = time.addSecs(minute * 60);
            if (later < time)
                return {};
            at = QDateTime(day, later);
        }
        return at;
    }
    // The clock went back and this time exists twice: take the first, so a
    // run fires before the hour repeats and not again within it.
    const int before = at.addSecs(-3 * 3600).offsetFromUtc();
    const int shift = before - at.offsetFromUtc();
    if (shift > 0) {
        const QDateTime earlier = at.addSecs(-shift);
        if (earlier.date() == day && earlier.time() == time)
            return earlier;
    }
    return at;
}

bool ScheduleCalculator::isRunDay(const Schedule& schedule, const QDate& day)
{
    switch (schedule.frequencyType()) {
    case Schedule::Daily:
        return true;
    case Schedule::Weekly: {
        const QBitArray days = schedule.weeklyFrequency();
        const int bit = day.dayOfWeek() - 1;
        return bit < days.size() && days.testBit(bit);
    }
    case Schedule::Monthly: {
        const auto monthly = schedule.monthlyFrequency();
        return isRepeatMonth(schedule.monthRepeat(), day) && isNthWeekday(day, monthly.weekNumber, monthly.day);
    }
    case Schedule::DayOfMonth: {
        // The 31st of a 30-day month is its last day: a user who chose the
        // 31st wants the end of every month.
        const int wanted = qBound(1, schedule.dayOfMonthFrequency(), 31);
        return isRepeatMonth(schedule.monthRepeat(), day) && day.day() == qMin(wanted, day.daysInMonth());
    }
    }
    return false;
}

QDateTime ScheduleCalculator::firstTimeOnDay(const Schedule& schedule, const QDate& day, const QDateTime& after)
{
    if (!schedule.dailyRecurrence()) {
        const QDateTime at = localInstant(day, schedule.occursAt().isValid() ? schedule.occursAt() : QTime(0, 0));
        return at.isValid() && at > after ? at : QDateTime();
    }
    const auto every = schedule.occursEvery();
    const QTime from = every.from.isValid() ? every.from : QTime(0, 0);
    const QTime to = every.to.isValid() ? every.to : QTime(23, 59, 59);
    const int step = qMax(1, every.minutes) * 60;
    const int first = from.msecsSinceStartOfDay() / 1000;
    // A window whose end lies before its start runs through midnight: the
    // times after midnight belong to the run day's window, on the next date.
    const int last = to.msecsSinceStartOfDay() / 1000 + (to < from ? 24 * 3600 : 0);
    // Steps go by the wall clock, not by elapsed seconds: on the day the
    // clock goes back the repeated hour is not run twice, and on the day it
    // goes forward the times after the gap keep their places.
    for (int offset = first; offset <= last; offset += step) {
        const QDate date = offset >= 24 * 3600 ? day.addDays(1) : day;
        const QDateTime at = localInstant(date, QTime(0, 0).addSecs(offset % (24 * 3600)));
        if (at.isValid() && at > after)
            return at;
    }
    return {};
}

QDateTime ScheduleCalculator::nextRun(const Schedule& schedule, const QDateTime& after)
{
    if (!schedule.isEnable())
        return {};
    const QDateTime local = after.toLocalTime();
    if (schedule.type() == Schedule::Once) {
        const QDateTime at = schedule.specificDate().toLocalTime();
        return at.isValid() && at > local ? at : QDateTime();
    }
    // From the day before: a window through midnight that began yesterday
    // may still have times left today.
    for (int offset = -1; offset < SearchDays; ++offset) {
        const QDate day = local.date().addDays(offset);
        if (!isRunDay(schedule, day))
            continue;
        const QDateTime at = firstTimeOnDay(schedule, day, local);
        if (at.isValid())
            return at;
    }
    return {};
}

} // namespace NVB::Engine
