#include "schedule.h"

#include "records/recordxml.h"

namespace NVB::Info::Plan {

namespace {
constexpr int DaysInWeek = 7;
}

Schedule::Schedule()
    : m_enable(false)
    , m_type(Recurring)
    , m_frequencyType(Daily)
    , m_dailyRecurrence(false)
    , m_occursAt(23, 0)
    , m_occursEvery {QTime(8, 0), QTime(18, 0), 60}
    , m_weeklyFrequency(DaysInWeek)
    , m_monthlyFrequency {First, 1}
    , m_dayOfMonthFrequency(1)
    , m_monthRepeat {1, QDate()}
    , m_stopAfter(0)
{
    // Working days, for when a user switches a fresh schedule to weekly.
    for (int day = 0; day < 5; ++day)
        m_weeklyFrequency.setBit(day);
}

Schedule::Schedule(Schedule& other)
{
    copyFrom(other);
}

Schedule& Schedule::operator=(Schedule& other)
{
    if (this != &other)
        copyFrom(other);
    return *this;
}

void Schedule::copyFrom(const Schedule& other)
{
    m_enable = other.m_enable;
    m_type = other.m_type;
    m_specificDate = other.m_specificDate;
    m_frequencyType = other.m_frequencyType;
    m_dailyRecurrence = other.m_dailyRecurrence;
    m_occursAt = other.m_occursAt;
    m_occursEvery = other.m_occursEvery;
    m_weeklyFrequency = other.m_weeklyFrequency;
    m_monthlyFrequency = other.m_monthlyFrequency;
    m_dayOfMonthFrequency = other.m_dayOfMonthFrequency;
    m_monthRepeat = other.m_monthRepeat;
    m_stopAfter = other.m_stopAfter;
}

void Schedule::setOccursEvery(int minutes, const QTime& from, const QTime& to)
{
    m_occursEvery = {from, to, minutes};
}

void Schedule::setWeeklyFrequency(const QBitArray& days)
{
    m_weeklyFrequency = days;
    m_weeklyFrequency.resize(DaysInWeek);
}

void Schedule::setMonthlyFrequency(WeekNumber week, int day)
{
    m_monthlyFrequency = {week, day};
}

void Schedule::setMonthRepeat(int months, const QDate& start)
{
    m_monthRepeat = {months, start};
}

void Schedule::writeXml(QDomElement& parent, const QString& name) const
{
    QDomElement e = RecordXml::addElement(parent, name);
    RecordXml::addBool(e, QStringLiteral("Enable"), m_enable);
    RecordXml::addInt(e, QStringLiteral("Type"), m_type);
    RecordXml::addDateTime(e, QStringLiteral("SpecificDate"), m_specificDate);
    RecordXml::addInt(e, QStringLiteral("FrequencyType"), m_frequencyType);
    RecordXml::addBool(e, QStringLiteral("DailyRecurrence"), m_dailyRecurrence);
    RecordXml::addTime(e, QStringLiteral("OccursAt"), m_occursAt);
    QDomElement every = RecordXml::addElement(e, QStringLiteral("OccursEvery"));
    RecordXml::addTime(every, QStringLiteral("From"), m_occursEvery.from);
    RecordXml::addTime(every, QStringLiteral("To"), m_occursEvery.to);
    RecordXml::addInt(every, QStringLiteral("Minutes"), m_occursEvery.minutes);
    RecordXml::addBits(e, QStringLiteral("WeeklyFrequency"), m_weeklyFrequency);
    QDomElement monthly = RecordXml::addElement(e, QStringLiteral("MonthlyFrequency"));
    RecordXml::addInt(monthly, QStringLiteral("WeekNumber"), m_monthlyFrequency.weekNumber);
    RecordXml::addInt(monthly, QStringLiteral("Day"), m_monthlyFrequency.day);
    RecordXml::addInt(e, QStringLiteral("DayOfMonthFrequency"), m_dayOfMonthFrequency);
    QDomElement repeat = RecordXml::addElement(e, QStringLiteral("MonthRepeat"));
    RecordXml::addInt(repeat, QStringLiteral("Months"), m_monthRepeat.months);
    RecordXml::addDate(repeat, QStringLiteral("Start"), m_monthRepeat.start);
    RecordXml::addUInt(e, QStringLiteral("StopAfter"), m_stopAfter);
}

void Schedule::readXml(const QDomElement& e)
{
    m_enable = RecordXml::toBool(e, QStringLiteral("Enable"));
    m_type = Type(RecordXml::toEnum(e, QStringLiteral("Type"), {Once, Recurring}));
    m_specificDate = RecordXml::toDateTime(e, QStringLiteral("SpecificDate"));
    m_frequencyType
        = FrequencyType(RecordXml::toEnum(e, QStringLiteral("FrequencyType"), {Daily, Weekly, Monthly, DayOfMonth}));
    m_dailyRecurrence = RecordXml::toBool(e, QStringLiteral("DailyRecurrence"));
    m_occursAt = RecordXml::toTime(e, QStringLiteral("OccursAt"));
    const QDomElement every = RecordXml::element(e, QStringLiteral("OccursEvery"));
    m_occursEvery.from = RecordXml::toTime(every, QStringLiteral("From"));
    m_occursEvery.to = RecordXml::toTime(every, QStringLiteral("To"));
    m_occursEvery.minutes = int(RecordXml::toInt(every, QStringLiteral("Minutes"), 1, 24 * 60));
    m_weeklyFrequency = RecordXml::toBits(e, QStringLiteral("WeeklyFrequency"), DaysInWeek);
    const QDomElement monthly = RecordXml::element(e, QStringLiteral("MonthlyFrequency"));
    m_monthlyFrequency.weekNumber = WeekNumber(
        RecordXml::toEnum(monthly, QStringLiteral("WeekNumber"), {First, Second, Third, Fourth, Penultimate, Last}));
    m_monthlyFrequency.day = int(RecordXml::toInt(monthly, QStringLiteral("Day"), 1, DaysInWeek));
    m_dayOfMonthFrequency = int(RecordXml::toInt(e, QStringLiteral("DayOfMonthFrequency"), 1, 31));
    const QDomElement repeat = RecordXml::element(e, QStringLiteral("MonthRepeat"));
    m_monthRepeat.months = int(RecordXml::toInt(repeat, QStringLiteral("Months"), 1, 1200));
    m_monthRepeat.start = RecordXml::toDate(repeat, QStringLiteral("Start"));
    m_stopAfter = RecordXml::toUInt(e, QStringLiteral("StopAfter"));
}

} // namespace NVB::Info::Plan
