#include <QtTest>

#include "records/plan/schedule.h"
#include "schedule/schedulecalculator.h"
#include "testmain.h"

using NVB::Engine::ScheduleCalculator;
using NVB::Info::Plan::Schedule;

class TestScheduleCalculator : public QObject
{
    Q_OBJECT

private:
    static QDateTime at(int y, int m, int d, int h = 0, int min = 0)
    {
        return QDateTime(QDate(y, m, d), QTime(h, min));
    }

    static Schedule recurring(Schedule::FrequencyType frequency)
    {
        Schedule schedule;
        schedule.setEnable(true);
        schedule.setType(Schedule::Recurring);
        schedule.setFrequencyType(frequency);
        schedule.setDailyRecurrence(false);
        schedule.setOccursAt(QTime(22, 30));
        return schedule;
    }

    // Runs the rest of a test in a real zone with daylight saving.
    struct Zone
    {
        explicit Zone(const char* name) { qputenv("TZ", name); }
        ~Zone() { qputenv("TZ", "UTC"); }
    };

private slots:
    void initTestCase() { qputenv("TZ", "UTC"); }

    void shouldRunOnceAcrossDaylightSavingEdges()
    {
        const Zone berlin("Europe/Berlin");
        // 2026-03-29 02:00 CET jumps to 03:00 CEST: a 02:30 run happens at
        // 03:00, the first minute after the gap, and the next day at 02:30.
        Schedule gap = recurring(Schedule::Daily);
        gap.setOccursAt(QTime(2, 30));
        const QDateTime spring = ScheduleCalculator::nextRun(gap, at(2026, 3, 29, 1));
        QCOMPARE(spring.toUTC(), QDateTime(QDate(2026, 3, 29), QTime(1, 0), Qt::UTC));
        QCOMPARE(
            ScheduleCalculator::nextRun(gap, spring).toUTC(), QDateTime(QDate(2026, 3, 30), QTime(0, 30), Qt::UTC));

        // 2026-10-25 03:00 CEST falls back to 02:00 CET: 02:30 comes twice
        // and runs at the first only (00:30 UTC), then the next day.
        const QDateTime autumn = ScheduleCalculator::nextRun(gap, at(2026, 10, 25, 1));
        QCOMPARE(autumn.toUTC(), QDateTime(QDate(2026, 10, 25), QTime(0, 30), Qt::UTC));
        QCOMPARE(
            ScheduleCalculator::nextRun(gap, autumn).toUTC(), QDateTime(QDate(2026, 10, 26), QTime(1, 30), Qt::UTC));

        // Every 30 minutes through the night: the repeated hour's wall-clock
        // times run once each, the skipped hour's times merge into 03:00.
        Schedule every = recurring(Schedule::Daily);
        every.setDailyRecurrence(true);
        every.setOccursEvery(30, QTime(0, 0), QTime(4, 0));
        const auto runs = [&every](const QDateTime& from, const QDateTime& until) {
            QList<QDateTime> list;
            for (QDateTime t = ScheduleCalculator::nextRun(every, from); t.isValid() && t < until;
                 t = ScheduleCalculator::nextRun(every, t))
                list << t.toUTC();
            return list;
        };
        const QList<QDateTime> fall = runs(at(2026, 10, 24, 23), at(2026, 10, 25, 5));
        QCOMPARE(fall.size(), 9); // 00:00 ... 04:00 once each
        QCOMPARE(fall.at(5), QDateTime(QDate(2026, 10, 25), QTime(0, 30), Qt::UTC)); // 02:30 CEST
        QCOMPARE(fall.at(6), QDateTime(QDate(2026, 10, 25), QTime(2, 0), Qt::UTC)); // 03:00 CET
        const QList<QDateTime> spring2 = runs(at(2026, 3, 28, 23), at(2026, 3, 29, 5));
        QCOMPARE(spring2.size(), 7); // 00:00 ... 01:30, 03:00 ... 04:00
        QCOMPARE(spring2.at(3), QDateTime(QDate(2026, 3, 29), QTime(0, 30), Qt::UTC)); // 01:30 CET
        QCOMPARE(spring2.at(4), QDateTime(QDate(2026, 3, 29), QTime(1, 0), Qt::UTC)); // 03:00 CEST
    }

    void shouldNotRunWhenDisabledOrPast()
    {
        Schedule schedule = recurring(Schedule::Daily);
        schedule.setEnable(false);
        QVERIFY(!ScheduleCalculator::nextRun(schedule, at(2026, 1, 1)).isValid());

        Schedule once;
        once.setEnable(true);
        once.setType(Schedule::Once);
        once.setSpecificDate(at(2026, 6, 1, 8));
        QCOMPARE(ScheduleCalculator::nextRun(once, at(2026, 5, 1)), at(2026, 6, 1, 8));
        QVERIFY(!ScheduleCalculator::nextRun(once, at(2026, 6, 1, 8)).isValid());
    }

    void shouldRunWeeklyOnChosenDays()
    {
        Schedule schedule = recurring(Schedule::Weekly);
        QBitArray days(7);
        days.setBit(2); // Wednesday
        days.setBit(5); // Saturday
        schedule.setWeeklyFrequency(days);
        // 2026-03-09 is a Monday.
        QCOMPARE(ScheduleCalculator::nextRun(schedule, at(2026, 3, 9)), at(2026, 3, 11, 22, 30));
        QCOMPARE(ScheduleCalculator::nextRun(schedule, at(2026, 3, 12)), at(2026, 3, 14, 22, 30));
        schedule.setWeeklyFrequency(QBitArray(7));
        QVERIFY(!ScheduleCalculator::nextRun(schedule, at(2026, 3, 9)).isValid());
    }

    // One table over the month ends, the leap day, windows through midnight
    // and repeats across the year's end; each row is a schedule, the clock's
    // "now" and the run expected next.
    void shouldFollowTheCalendar_data()
    {
        QTest::addColumn<int>("frequency");
        QTest::addColumn<int>("day"); // day of month, or weekday for the nth-weekday rows
        QTest::addColumn<int>("week");
        QTest::addColumn<int>("months");
        QTest::addColumn<QDate>("start");
        QTest::addColumn<QTime>("from"); // invalid: once a day at 22:30
        QTest::addColumn<QTime>("to");
        QTest::addColumn<QDateTime>("after");
        QTest::addColumn<QDateTime>("expected");
        const QDate none;
        const QTime daily;
        QTest::newRow("29th in a leap February") << int(Schedule::DayOfMonth) << 29 << 0 << 1 << none << daily << daily
                                                 << at(2028, 2, 1) << at(2028, 2, 29, 22, 30);
        QTest::newRow("30th in a leap February is the 29th")
            << int(Schedule::DayOfMonth) << 30 << 0 << 1 << none << daily << daily << at(2028, 2, 1)
            << at(2028, 2, 29, 22, 30);
        QTest::newRow("31st in a plain February is the 28th")
            << int(Schedule::DayOfMonth) << 31 << 0 << 1 << none << daily << daily << at(2027, 2, 1)
            << at(2027, 2, 28, 22, 30);
        QTest::newRow("every 2 months over the year's end")
            << int(Schedule::DayOfMonth) << 15 << 0 << 2 << QDate(2026, 11, 20) << daily << daily << at(2026, 11, 16)
            << at(2027, 1, 15, 22, 30);
        QTest::newRow("last friday, every 6 months")
            << int(Schedule::Monthly) << 5 << int(Schedule::Last) << 6 << QDate(2026, 1, 1) << daily << daily
            << at(2026, 2, 1) << at(2026, 7, 31, 22, 30);
        QTest::newRow("penultimate monday") << int(Schedule::Monthly) << 1 << int(Schedule::Penultimate) << 1 << none
                                            << daily << daily << at(2026, 3, 1) << at(2026, 3, 23, 22, 30);
        QTest::newRow("fourth sunday of a five-sunday month")
            << int(Schedule::Monthly) << 7 << int(Schedule::Fourth) << 1 << none << daily << daily << at(2026, 3, 1)
            << at(2026, 3, 22, 22, 30);
        QTest::newRow("window through midnight, evening")
            << int(Schedule::Daily) << 0 << 0 << 1 << none << QTime(22, 0) << QTime(2, 0) << at(2026, 3, 10, 23, 58)
            << at(2026, 3, 11, 0, 0);
        QTest::newRow("window through midnight, its last time")
            << int(Schedule::Daily) << 0 << 0 << 1 << none << QTime(22, 0) << QTime(2, 0) << at(2026, 3, 11, 1, 55)
            << at(2026, 3, 11, 2, 0);
        QTest::newRow("window through midnight, after its end")
            << int(Schedule::Daily) << 0 << 0 << 1 << none << QTime(22, 0) << QTime(2, 0) << at(2026, 3, 11, 2, 0)
            << at(2026, 3, 11, 22, 0);
        // Weekly on Friday only: Saturday 00:30 still belongs to Friday's window.
        QTest::newRow("weekly window into the next day")
            << int(Schedule::Weekly) << 5 << 0 << 1 << none << QTime(23, 0) << QTime(1, 0) << at(2026, 3, 14, 0, 20)
            << at(2026, 3, 14, 0, 25);
    }

    void shouldFollowTheCalendar()
    {
        QFETCH(int, frequency);
        QFETCH(int, day);
        QFETCH(int, week);
        QFETCH(int, months);
        QFETCH(QDate, start);
        QFETCH(QTime, from);
        QFETCH(QTime, to);
        QFETCH(QDateTime, after);
        QFETCH(QDateTime, expected);
        Schedule schedule = recurring(Schedule::FrequencyType(frequency));
        schedule.setDayOfMonthFrequency(day);
        schedule.setMonthlyFrequency(Schedule::WeekNumber(week), day);
        schedule.setMonthRepeat(months, start);
        QBitArray days(7);
        if (frequency == Schedule::Weekly)
            days.setBit(day - 1);
        schedule.setWeeklyFrequency(days);
        if (from.isValid()) {
            schedule.setDailyRecurrence(true);
            schedule.setOccursEvery(5, from, to);
        }
        QCOMPARE(ScheduleCalculator::nextRun(schedule, after), expected);
    }
};

NVB_TEST_GUILESS_MAIN(TestScheduleCalculator)
#include "tst_schedulecalculator.moc"
