#include <QSignalSpy>

#include "planfixture.h"
#include "plans/plancontrolobject.h"
#include "testmain.h"

using namespace NVB::GUI;
using NvbTest::EngineTestPeer;

class TestPlanControlObject : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();
    void shouldReportStatusOfKnownPlanOnly();
    void shouldReportStatusAgainWhenTableChanges();
    void shouldStartOrStopByStatus_data();
    void shouldStartOrStopByStatus();
    void shouldRefusePlanNeitherRunningNorIdle_data();
    void shouldRefusePlanNeitherRunningNorIdle();
    void shouldPassEngineRefusal();
    void shouldRemoveCurrentPlan();
    void shouldTellWhenCurrentPlanLeavesTable();

private:
    EngineTestPeer* m_peer = nullptr;
    PlanTest::Engine* m_engine = nullptr;
    PlanTableModel* m_table = nullptr;
    QUuid m_idle;
    QUuid m_running;
    QUuid m_stopping;
};

void TestPlanControlObject::initTestCase()
{
    m_peer = new EngineTestPeer(this);
    QVERIFY(PlanTest::startChannel(m_peer));
}

void TestPlanControlObject::init()
{
    m_engine = new PlanTest::Engine(m_peer);
    m_idle = QUuid::createUuid();
    m_running = QUuid::createUuid();
    m_stopping = QUuid::createUuid();
    m_engine->plans = {PlanTest::summary(m_idle, QStringLiteral("Idle"), 1, 2),
        PlanTest::summary(m_running, QStringLiteral("Running"), 2, 1),
        PlanTest::summary(m_stopping, QStringLiteral("Stopping"), 1, 3)};
    m_table = new PlanTableModel();
    PlanTest::creator().model = m_table;
    QSignalSpy complite(m_table, &BaseModel::complite);
    m_table->init();
    QVERIFY(complite.wait());
    for (const char* name : {"PlanExecuteStart", "PlanExecuteStop", "PlanRemove"})
        m_peer->onCommand(QLatin1String(name), EngineTestPeer::Answer::reply({}));
}

void TestPlanControlObject::cleanup()
{
    PlanTest::creator().model = nullptr;
    delete m_table;
    delete m_engine;
    QTRY_COMPARE(NVB::Common::Communication::ServiceLink::instance()->pendingCount(), 0);
}

void TestPlanControlObject::shouldReportStatusOfKnownPlanOnly()
{
    PlanControlObject control;
    QSignalSpy status(&control, &PlanControlObject::statusChanged);
    control.setCurrentPlan(QUuid::createUuid(), 1);
    QCOMPARE(status.count(), 0);
    control.setCurrentPlan(m_running, 2);
    QCOMPARE(status.count(), 1);
    QCOMPARE(status.first().at(0).toInt(), 1);
    QCOMPARE(status.first().at(1).toInt(), 2);
    QCOMPARE(control.currentPlanType(), 2);
}

void TestPlanControlObject::shouldReportStatusAgainWhenTableChanges()
{
    PlanControlObject control;
    control.setCurrentPlan(m_idle, 1);
    QSignalSpy status(&control, &PlanControlObject::statusChanged);
    m_peer->notify(PlanTest::Format::Plan::StateChange::Type,
        {{QStringLiteral("id"), m_idle.toString()}, {QStringLiteral("state"), 1}});
    QVERIFY(status.wait());
    QCOMPARE(status.first().at(0).toInt(), 1);
}

void TestPlanControlObject::shouldStartOrStopByStatus_data()
{
    QTest::addColumn<bool>("running");
    QTest::addColumn<bool>("forceFull");
    QTest::addColumn<QString>("command");
    QTest::newRow("start") << false << false << "PlanExecuteStart";
    QTest::newRow("start full") << false << true << "PlanExecuteStart";
    QTest::newRow("stop") << true << false << "PlanExecuteStop";
    QTest::newRow("stop ignores full") << true << true << "PlanExecuteStop";
}

void TestPlanControlObject::shouldStartOrStopByStatus()
{
    QFETCH(bool, running);
    QFETCH(bool, forceFull);
    QFETCH(QString, command);
    PlanControlObject control;
    const QUuid id = running ? m_running : m_idle;
    control.setCurrentPlan(id, 1);
    QSignalSpy begin(&control, &PlanControlObject::updatedBegin);
    QSignalSpy done(&control, &PlanControlObject::updatedComplite);
    QSignalSpy failed(&control, &PlanControlObject::updatedError);
    const int before = m_peer->requestCount(command);
    if (forceFull)
        control.onChangePlanStatus(true);
    else
        control.onChangePlanStatus();
    QCOMPARE(begin.count(), 1);
    QVERIFY(done.wait());
    QCOMPARE(failed.count(), 0);
    QCOMPARE(m_peer->requestCount(command), before + 1);
    const QJsonObject request = m_peer->lastRequest(command);
    const QJsonObject params = request.value(QStringLiteral("params")).toObject();
    QCOMPARE(QUuid(params.value(QStringLiteral("ID")).toString()), id);
    // The key is there only for a forced full run.
    QCOMPARE(params.contains(QStringLiteral("force_full")), forceFull && !running);
    if (params.contains(QStringLiteral("force_full")))
        QCOMPARE(params.value(QStringLiteral("force_full")).toBool(), true);
}

void TestPlanControlObject::shouldRefusePlanNeitherRunningNorIdle_data()
{
    QTest::addColumn<bool>("known");
    QTest::newRow("stopping plan") << true;
    QTest::newRow("plan not in table") << false;
}

void TestPlanControlObject::shouldRefusePlanNeitherRunningNorIdle()
{
    QFETCH(bool, known);
    PlanControlObject control;
    control.setCurrentPlan(known ? m_stopping : QUuid::createUuid(), 1);
    QSignalSpy failed(&control, &PlanControlObject::updatedError);
    const int before = m_peer->requests().size();
    control.onChangePlanStatus();
    QCOMPARE(failed.count(), 1);
    QCOMPARE(failed.first().first().toString(), QStringLiteral("Commnunication command don't registrate"));
    QTest::qWait(20);
    QCOMPARE(m_peer->requests().size(), before);
}

void TestPlanControlObject::shouldPassEngineRefusal()
{
    m_peer->onCommand(
        QStringLiteral("PlanExecuteStart"), EngineTestPeer::Answer::error(QStringLiteral("Licence expired")));
    PlanControlObject control;
    control.setCurrentPlan(m_idle, 1);
    QSignalSpy failed(&control, &PlanControlObject::updatedError);
    control.onChangePlanStatus();
    QVERIFY(failed.wait());
    QCOMPARE(failed.first().first().toString(), QStringLiteral("Licence expired"));
}

void TestPlanControlObject::shouldRemoveCurrentPlan()
{
    PlanControlObject control;
    control.setCurrentPlan(m_idle, 1);
    QSignalSpy done(&control, &PlanControlObject::updatedComplite);
    const int before = m_peer->requestCount(QStringLiteral("PlanRemove"));
    control.onRemove();
    QVERIFY(done.wait());
    QCOMPARE(m_peer->requestCount(QStringLiteral("PlanRemove")), before + 1);
    const QJsonObject request = m_peer->lastRequest(QStringLiteral("PlanRemove"));
    QCOMPARE(QUuid(request.value(QStringLiteral("params")).toObject().value(QStringLiteral("ID")).toString()), m_idle);
    // The row stays until the engine says the plan is gone.
    QCOMPARE(m_table->rowCount(), 3);
}

void TestPlanControlObject::shouldTellWhenCurrentPlanLeavesTable()
{
    PlanControlObject control;
    control.setCurrentPlan(m_idle, 1);
    QSignalSpy removed(&control, &PlanControlObject::removeCurrentPlan);
    QSignalSpy rows(m_table, &QAbstractItemModel::rowsRemoved);
    m_peer->notify(PlanTest::Format::Plan::Remove::Type, {{QStringLiteral("id"), m_running.toString()}});
    QVERIFY(rows.wait());
    QCOMPARE(removed.count(), 0);
    m_peer->notify(PlanTest::Format::Plan::Remove::Type, {{QStringLiteral("id"), m_idle.toString()}});
    QVERIFY(removed.wait());
    QCOMPARE(removed.first().first().toUuid(), m_idle);
    QVERIFY(control.currentPlan().isNull());
}

NVB_TEST_MAIN(TestPlanControlObject)
#include "tst_plancontrolobject.moc"
