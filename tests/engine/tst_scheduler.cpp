#include <QSignalSpy>
#include <QtTest>

#include "records/plan/backupfile.h"
#include "schedule/scheduler.h"
#include "store/enginestore.h"
#include "testmain.h"

using namespace NVB::Engine;
using NVB::Info::Plan::Schedule;

// The scheduler against a clock the test moves: what fires when, after a
// sleep of the machine, and which runs are forced full.
class TestScheduler : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    EngineStore m_store;
    QDateTime m_now;

    static QDateTime utc(int d, int h, int min = 0, int s = 0)
    {
        return QDateTime(QDate(2026, 3, d), QTime(h, min, s), Qt::UTC);
    }

    static Schedule daily(const QTime& time)
    {
        Schedule schedule;
        schedule.setEnable(true);
        schedule.setType(Schedule::Recurring);
        schedule.setFrequencyType(Schedule::Daily);
        schedule.setDailyRecurrence(false);
        schedule.setOccursAt(time);
        return schedule;
    }

    QUuid save(const QString& name, bool runMissed, const QTime& fullAt = QTime())
    {
        NVB::Info::Plan::BackupFile plan;
        plan.setId(QUuid::createUuid());
        plan.setName(name);
        plan.setRunMissedPlan(runMissed);
        Schedule regular = daily(QTime(22, 30));
        plan.schedule() = regular;
        if (fullAt.isValid()) {
            Schedule full = daily(fullAt);
            plan.forceFullSchedule() = full;
        }
        StoredPlan stored;
        stored.id = plan.id();
        stored.name = name;
        stored.xml = plan.toXml();
        return m_store.savePlan(stored) ? plan.id() : QUuid();
    }

    // What fired, as "plan:full" texts, in order.
    static QStringList fired(QSignalSpy& spy, const QHash<QUuid, QString>& names)
    {
        QStringList list;
        for (const QList<QVariant>& call : std::as_const(spy))
            list << names.value(call.at(0).toUuid()) + (call.at(1).toBool() ? QStringLiteral(":full") : QString());
        spy.clear();
        list.sort();
        return list;
    }

private slots:
    void initTestCase()
    {
        qputenv("TZ", "UTC");
        QVERIFY(m_store.open(m_dir.filePath(QStringLiteral("engine.db"))));
    }

    void shouldFollowTheClockCatchUpAndForceFullRuns()
    {
        QHash<QUuid, QString> names{{save("skips", false), "skips"},
                                          {save("catches", true), "catches"},
                                          {save("full", false, QTime(23, 0)), "full"}};
        QVERIFY(!names.contains(QUuid()));
        Scheduler scheduler(&m_store);
        m_now = utc(10, 12);
        scheduler.setClockForTest([this] { return m_now; });
        QSignalSpy spy(&scheduler, &Scheduler::due);
        scheduler.reload(true);

        // Ten and a half hours ahead, and yet the clock is read within a minute.
        QVERIFY(scheduler.msUntilNextCheck() > 0);
        QVERIFY(scheduler.msUntilNextCheck() <= Scheduler::CheckIntervalMs);
        scheduler.check();
        QCOMPARE(spy.count(), 0);

        m_now = utc(10, 22, 30, 20);
        scheduler.check();
        QCOMPARE(fired(spy, names), (QStringList{"catches", "full", "skips"}));
        m_now = utc(10, 23, 0, 5);
        scheduler.check();
        QCOMPARE(fired(spy, names), QStringList{"full:full"});
        QCOMPARE(scheduler.nextRun(names.key("full")), utc(11, 22, 30));

        // The machine sleeps for two and a half days: on waking every missed
        // time is noticed at the next look, and only the plan that asks for
        // missed runs runs, once.
        m_now = utc(13, 9);
        scheduler.check();
        QCOMPARE(fired(spy, names), QStringList{"catches"});
        QCOMPARE(scheduler.nextRun(names.key("skips")), utc(13, 22, 30));
        scheduler.check();
        QCOMPARE(spy.count(), 0);

        // Times missed while the engine was down are caught up at start, a
        // missed full time as a full run.
        const QUuid fullCatch = save("fullcatch", true, QTime(23, 0));
        names.insert(fullCatch, "fullcatch");
        m_store.setLastScheduled(fullCatch, utc(13, 22, 45));
        m_now = utc(14, 8);
        Scheduler restarted(&m_store);
        restarted.setClockForTest([this] { return m_now; });
        QSignalSpy restartSpy(&restarted, &Scheduler::due);
        restarted.reload(true);
        QTRY_COMPARE(restartSpy.count(), 2);
        QCOMPARE(fired(restartSpy, names), (QStringList{"catches", "fullcatch:full"}));
    }
};

NVB_TEST_GUILESS_MAIN(TestScheduler)
#include "tst_scheduler.moc"
