#include <QSignalSpy>

#include "planfixture.h"
#include "plans/planstatuslist.h"
#include "testmain.h"

using namespace NVB::GUI;
using NvbTest::EngineTestPeer;

class TestPlanStatusList : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void shouldKeepLatestProgressMessage();
    void shouldDropEntryOnlyWhenPlanStartsRunning_data();
    void shouldDropEntryOnlyWhenPlanStartsRunning();
    void shouldRemoveStatusOnRequest();

private:
    void report(const QUuid& id, const QString& status);

    EngineTestPeer* m_peer = nullptr;
};

void TestPlanStatusList::initTestCase()
{
    m_peer = new EngineTestPeer(this);
    QVERIFY(PlanTest::startChannel(m_peer));
    QVERIFY(PlanStatusList::instance());
}

void TestPlanStatusList::report(const QUuid& id, const QString& status)
{
    QSignalSpy updated(PlanStatusList::instance(), &PlanStatusList::updated);
    m_peer->notify(PlanTest::Format::Worker::ReportProgress::Type,
        {{QStringLiteral("plan_id"), id.toString()}, {QStringLiteral("status"), status},
            {QStringLiteral("progress"), 40}});
    QVERIFY(updated.wait());
    QCOMPARE(updated.last().at(0).toUuid(), id);
    QCOMPARE(updated.last().at(1).toMap().value(QStringLiteral("status")).toString(), status);
}

void TestPlanStatusList::shouldKeepLatestProgressMessage()
{
    const QUuid id = QUuid::createUuid();
    report(id, QStringLiteral("Scanning"));
    report(id, QStringLiteral("Uploading"));
    const QMap<QString, QVariant> status = PlanStatusList::instance()->status(id);
    QCOMPARE(status.value(QStringLiteral("status")).toString(), QStringLiteral("Uploading"));
    QCOMPARE(status.value(QStringLiteral("progress")).toInt(), 40);
}

void TestPlanStatusList::shouldDropEntryOnlyWhenPlanStartsRunning_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<bool>("kept");
    QTest::newRow("running") << 1 << false;
    QTest::newRow("idle") << 2 << true;
    QTest::newRow("stopping") << 3 << true;
}

void TestPlanStatusList::shouldDropEntryOnlyWhenPlanStartsRunning()
{
    QFETCH(int, state);
    QFETCH(bool, kept);
    const QUuid id = QUuid::createUuid();
    report(id, QStringLiteral("Uploading"));
    m_peer->notify(PlanTest::Format::Plan::StateChange::Type,
        {{QStringLiteral("id"), id.toString()}, {QStringLiteral("state"), state}});
    // The report behind the state change proves it has been handled.
    report(QUuid::createUuid(), QStringLiteral("Other"));
    QCOMPARE(!PlanStatusList::instance()->status(id).isEmpty(), kept);
}

void TestPlanStatusList::shouldRemoveStatusOnRequest()
{
    const QUuid id = QUuid::createUuid();
    QVERIFY(PlanStatusList::instance()->status(id).isEmpty());
    report(id, QStringLiteral("Uploading"));
    PlanStatusList::instance()->removeStatus(id);
    QVERIFY(PlanStatusList::instance()->status(id).isEmpty());
}

NVB_TEST_MAIN(TestPlanStatusList)
#include "tst_planstatuslist.moc"
