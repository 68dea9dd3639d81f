#include <QJsonArray>
#include <QtTest>

#include "commands/commandrouter.h"
#include "core/engine.h"
#include "records/plan/backupfile.h"
#include "records/plan/restorefile.h"
#include "schedule/scheduler.h"
#include "server/notifier.h"
#include "service/notification/format.h"
#include "service/v2/commands/plan/getbackupplanlist.h"
#include "service/v2/commands/plan/getplan.h"
#include "store/enginestore.h"
#include "testmain.h"

using namespace NVB::Engine;
namespace Format = NVB::Common::Communication::Notification::Format;

// The engine's answers to single frames, without a socket in between.
class TestCommandRouter : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    EngineStore m_store;
    Notifier m_notifier;
    Engine* m_engine = nullptr;
    CommandRouter* m_router = nullptr;
    QList<QJsonObject> m_sent;

    static QJsonObject v1(const QString& command, const QJsonValue& params = QJsonObject())
    {
        return {{"type", "request"}, {"id", QUuid::createUuid().toString()}, {"command", command}, {"params", params}};
    }

    static QJsonObject v2(const QUuid& commandId, const QJsonValue& request = QJsonObject())
    {
        return {{"type", "request2"}, {"id", QUuid::createUuid().toString()}, {"command_id", commandId.toString()},
                {"request", request}};
    }

    QUuid save(NVB::Info::Plan::Base& plan, const QString& name)
    {
        plan.setId(QUuid::createUuid());
        plan.setName(name);
        const QJsonObject reply = m_router->handle(v1("CommonPlanEdit", QJsonObject{{"planXML", plan.toXml()}}));
        return reply.value("status").toString() == QLatin1String("success") ? plan.id() : QUuid();
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_store.open(m_dir.filePath(QStringLiteral("engine.db"))));
        m_notifier.setSink([this](const QJsonObject& frame) { m_sent.append(frame); });
        m_engine = new Engine(&m_store, &m_notifier, this);
        m_router = new CommandRouter(m_engine);
    }

    void cleanupTestCase() { delete m_router; }

    void shouldRefuseMalformedFrames()
    {
        const QJsonObject unknown = m_router->handle(v1("NoSuchCommand"));
        QCOMPARE(unknown.value("status").toString(), QStringLiteral("error"));
        QCOMPARE(unknown.value("error_string").toString(), QStringLiteral("Unknown command NoSuchCommand"));
        QCOMPARE(unknown.value("type").toString(), QStringLiteral("reply"));

        QJsonObject noId = v1("PlanGetList");
        noId.remove("id");
        QVERIFY(m_router->handle(noId).isEmpty());
        QVERIFY(m_router->handle(QJsonObject{{"type", "reply"}}).isEmpty());

        const QJsonObject badParams = m_router->handle(v1("PlanGetList", QJsonArray{1, 2}));
        QVERIFY(badParams.value("error_string").toString().contains(QStringLiteral("params")));

        const QJsonObject unknownV2 = m_router->handle(v2(QUuid::createUuid()));
        QCOMPARE(unknownV2.value("status").toInt(), 3);
        QCOMPARE(unknownV2.value("type").toString(), QStringLiteral("reply2"));

        const QJsonObject wrongType = m_router->handle(v2(NVB::Common::Communication::V2::Plan::GetPlan::CommandId,
                                                         QJsonObject{{"planId", 17}}));
        QCOMPARE(wrongType.value("status").toInt(), 3);
        QVERIFY(wrongType.value("error_message").toString().contains(QStringLiteral("wrong type")));
    }

    void shouldNotifyAddThenUpdate()
    {
        m_sent.clear();
        NVB::Info::Plan::BackupFile plan;
        const QUuid id = save(plan, QStringLiteral("Notes"));
        QVERIFY(!id.isNull());
        plan.setName(QStringLiteral("Notes, renamed"));
        QCOMPARE(m_router->handle(v1("CommonPlanEdit", QJsonObject{{"planXML", plan.toXml()}, {"ID", id.toString()}}))
                     .value("status")
                     .toString(),
                 QStringLiteral("success"));
        QList<QUuid> types;
        for (const QJsonObject& frame : std::as_const(m_sent)) {
            if (frame.value("type").toString() != QLatin1String("notification2"))
                types << QUuid(frame.value("type").toString());
        }
        QCOMPARE(types, (QList<QUuid>{Format::Plan::Add::Type, Format::Plan::Update::Type}));

        // A request whose id differs from the plan document's is refused.
        const QJsonObject mismatch = m_router->handle(
            v1("CommonPlanEdit", QJsonObject{{"planXML", plan.toXml()}, {"ID", QUuid::createUuid().toString()}}));
        QVERIFY(mismatch.value("error_string").toString().contains(QStringLiteral("does not match")));
    }

    void shouldListPlansByJobKind()
    {
        NVB::Info::Plan::BackupFile backup;
        NVB::Info::Plan::RestoreFile restore;
        const QUuid backupId = save(backup, QStringLiteral("Backup one"));
        const QUuid restoreId = save(restore, QStringLiteral("Restore one"));
        const QJsonObject reply =
            m_router->handle(v2(NVB::Common::Communication::V2::Plan::GetBackupPlanList::CommandId));
        QCOMPARE(reply.value("status").toInt(), 2);
        QStringList ids;
        for (const QJsonValue& plan : reply.value("response").toObject().value("planList").toArray())
            ids << plan.toObject().value("id").toString();
        QVERIFY(ids.contains(backupId.toString()));
        QVERIFY(!ids.contains(restoreId.toString()));
    }

    void shouldCatchUpMissedRunOnlyWhenAsked_data()
    {
        QTest::addColumn<bool>("runMissed");
        QTest::newRow("runs missed plans") << true;
        QTest::newRow("leaves missed plans") << false;
    }

    void shouldCatchUpMissedRunOnlyWhenAsked()
    {
        QFETCH(bool, runMissed);
        NVB::Info::Plan::BackupFile plan;
        plan.setId(QUuid::createUuid());
        plan.setName(QStringLiteral("Nightly"));
        plan.setRunMissedPlan(runMissed);
        plan.schedule().setEnable(true);
        plan.schedule().setType(NVB::Info::Plan::Schedule::Recurring);
        plan.schedule().setFrequencyType(NVB::Info::Plan::Schedule::Daily);
        plan.schedule().setDailyRecurrence(false);
        plan.schedule().setOccursAt(QTime(2, 0));
        StoredPlan stored;
        stored.id = plan.id();
        stored.name = plan.name();
        stored.xml = plan.toXml();
        // Last seen two days ago: at least one nightly run fell in between.
        stored.lastScheduledUtc = QDateTime::currentDateTimeUtc().addDays(-2);
        QVERIFY(m_store.savePlan(stored));

        Scheduler scheduler(&m_store);
        QSignalSpy due(&scheduler, &Scheduler::due);
        scheduler.reload(true);
        QVERIFY(scheduler.nextRun(plan.id()).isValid());
        QVERIFY(scheduler.nextRun(plan.id()) > QDateTime::currentDateTimeUtc());
        QTest::qWait(50);
        QCOMPARE(due.count(), runMissed ? 1 : 0);
        // Seen now: a second start finds nothing missed.
        due.clear();
        scheduler.reload(true);
        QTest::qWait(50);
        QCOMPARE(due.count(), 0);
    }
};

NVB_TEST_GUILESS_MAIN(TestCommandRouter)
#include "tst_commandrouter.moc"
