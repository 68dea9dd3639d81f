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
    case Schedule::First: return index == 0;
    case Schedule::Second: return index == 1;
    case Schedule::Third: return index == 2;
    case Schedule::Fourth: return index == 3;
    case Schedule::Penultimate: return remaining == 1;
    case Schedule::Last: return remaining == 0;
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
        const QDateTime at(day, schedule.occursAt().isValid() ? schedule.occursAt() : QTime(0, 0));
        return at > after ? at : QDateTime();
    }
    const auto every = schedule.occursEvery();
    const QTime from = every.from.isValid() ? every.from : QTime(0, 0);
    const QTime to = every.to.isValid() ? every.to : QTime(23, 59, 59);
    const int step = qMax(1, every.minutes) * 60;
    for (QDateTime at(day, from); at.date() == day && at.time() <= to; at = at.addSecs(step)) {
        if (at > after)
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
    for (int offset = 0; offset < SearchDays; ++offset) {
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
