#pragma once

#include <QBitArray>
#include <QDate>
#include <QDateTime>
#include <QDomElement>
#include <QTime>

namespace NVB::Info::Plan {

// When a plan runs. A backup plan has two: its run schedule and the schedule
// of forced full backups. Editors take a whole copy, change it and assign it
// back, which is why copying goes through non-const references.
class Schedule
{
public:
    enum Type { Once = 0, Recurring = 1 };
    enum FrequencyType { Daily = 0, Weekly = 1, Monthly = 2, DayOfMonth = 3 };
    enum WeekNumber { First = 0, Second = 1, Third = 2, Fourth = 3, Penultimate = 4, Last = 5 };

    // Repeat every `minutes` between `from` and `to` on a run day.
    struct OccursEvery
    {
        QTime from;
        QTime to;
        int minutes = 60;
    };
    // The nth weekday of a month; `day` is 1 for Monday to 7 for Sunday.
    struct MonthlyFrequency
    {
        WeekNumber weekNumber = First;
        int day = 1;
    };
    // Every `months` months, counted from `start`.
    struct MonthRepeat
    {
        int months = 1;
        QDate start;
    };

    Schedule();
    Schedule(Schedule& other);
    Schedule& operator=(Schedule& other);

    bool isEnable() const { return m_enable; }
    void setEnable(bool enable) { m_enable = enable; }
    Type type() const { return m_type; }
    void setType(Type type) { m_type = type; }
    QDateTime specificDate() const { return m_specificDate; }
    void setSpecificDate(const QDateTime& date) { m_specificDate = date; }
    FrequencyType frequencyType() const { return m_frequencyType; }
    void setFrequencyType(FrequencyType type) { m_frequencyType = type; }
    bool dailyRecurrence() const { return m_dailyRecurrence; }
    void setDailyRecurrence(bool everyMinutes) { m_dailyRecurrence = everyMinutes; }
    QTime occursAt() const { return m_occursAt; }
    void setOccursAt(const QTime& time) { m_occursAt = time; }
    OccursEvery occursEvery() const { return m_occursEvery; }
    void setOccursEvery(int minutes, const QTime& from, const QTime& to);
    // Bit 0 is Monday, bit 6 Sunday; other sizes are cut or padded to 7.
    QBitArray weeklyFrequency() const { return m_weeklyFrequency; }
    void setWeeklyFrequency(const QBitArray& days);
    MonthlyFrequency monthlyFrequency() const { return m_monthlyFrequency; }
    void setMonthlyFrequency(WeekNumber week, int day);
    int dayOfMonthFrequency() const { return m_dayOfMonthFrequency; }
    void setDayOfMonthFrequency(int day) { m_dayOfMonthFrequency = day; }
    MonthRepeat monthRepeat() const { return m_monthRepeat; }
    void setMonthRepeat(int months, const QDate& start);
    // Seconds after which a run is stopped; 0 never stops it.
    unsigned long long stopAfter() const { return m_stopAfter; }
    void setStopAfter(unsigned long long seconds) { m_stopAfter = seconds; }

    void writeXml(QDomElement& parent, const QString& name) const;
    // Throws a QString naming the faulty element.
    void readXml(const QDomElement& element);

private:
    void copyFrom(const Schedule& other);

    bool m_enable;
    Type m_type;
    QDateTime m_specificDate;
    FrequencyType m_frequencyType;
    bool m_dailyRecurrence;
    QTime m_occursAt;
    OccursEvery m_occursEvery;
    QBitArray m_weeklyFrequency;
    MonthlyFrequency m_monthlyFrequency;
    int m_dayOfMonthFrequency;
    MonthRepeat m_monthRepeat;
    unsigned long long m_stopAfter;
};

} // namespace NVB::Info::Plan
