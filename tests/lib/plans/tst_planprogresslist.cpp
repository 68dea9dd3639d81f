#include <QSignalSpy>

#include "planfixture.h"
#include "plans/planprogresslist.h"
#include "service/progress/progressitem.h"
#include "service/v2/notification/planprogress.h"
#include "service/v2/notification/startedplan.h"
#include "service/v2/notification/stoppedplan.h"
#include "service/v2/notificationevent.h"
#include "testmain.h"

using namespace NVB::GUI;
using NvbTest::EngineTestPeer;
namespace V2 = NVB::Common::Communication::V2;

class TestPlanProgressList : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void shouldStoreLatestProgress();
    void shouldAnnounceStart();
    void shouldDropProgressOnStop();
    void shouldIgnoreNullEventsAndBadPayloads();

private:
    void sendProgress(const QUuid& id, int percent);

    EngineTestPeer* m_peer = nullptr;
};

void TestPlanProgressList::initTestCase()
{
    m_peer = new EngineTestPeer(this);
    QVERIFY(PlanTest::startChannel(m_peer));
    QVERIFY(PlanProgressList::instance());
}

void TestPlanProgressList::sendProgress(const QUuid& id, int percent)
{
    V2::Notification::PlanProgress progress;
    progress.setPlanId(id);
    auto data = QSharedPointer<NVB::System::Progress::ProgressManagerData>::create();
    data->setProgress(percent);
    progress.setProgressData(data);
    progress.setProgressItemList({QSharedPointer<NVB::System::Progress::ProgressItem>::create(
        QStringLiteral("Uploading"), QStringLiteral("3 of 9"), percent)});
    QSignalSpy updated(PlanProgressList::instance(), &PlanProgressList::updated);
    m_peer->notifyV2(progress);
    QVERIFY(updated.wait());
    QCOMPARE(updated.last().first().toUuid(), id);
}

void TestPlanProgressList::shouldStoreLatestProgress()
{
    const QUuid id = QUuid::createUuid();
    QVERIFY(PlanProgressList::instance()->value(id).first.isNull());
    sendProgress(id, 10);
    sendProgress(id, 55);
    const PlanProgressList::Progress value = PlanProgressList::instance()->value(id);
    QVERIFY(!value.first.isNull());
    QCOMPARE(value.first->progress(), 55);
    QCOMPARE(value.second.size(), 1);
    QCOMPARE(value.second.first()->toString(), QStringLiteral("Uploading: 3 of 9 (55%)"));
}

void TestPlanProgressList::shouldAnnounceStart()
{
    const QUuid id = QUuid::createUuid();
    V2::Notification::StartedPlan started;
    started.setPlanId(id);
    QSignalSpy spy(PlanProgressList::instance(), &PlanProgressList::planStarted);
    m_peer->notifyV2(started);
    QVERIFY(spy.wait());
    QCOMPARE(spy.first().first().toUuid(), id);
}

void TestPlanProgressList::shouldDropProgressOnStop()
{
    const QUuid id = QUuid::createUuid();
    sendProgress(id, 80);
    V2::Notification::StoppedPlan stopped;
    stopped.setPlanId(id);
    QSignalSpy spy(PlanProgressList::instance(), &PlanProgressList::planStopped);
    m_peer->notifyV2(stopped);
    QVERIFY(spy.wait());
    QCOMPARE(spy.first().first().toUuid(), id);
    QVERIFY(PlanProgressList::instance()->value(id).first.isNull());
    QVERIFY(PlanProgressList::instance()->value(id).second.isEmpty());
    // A plan stopped before any progress came is announced all the same.
    stopped.setPlanId(QUuid::createUuid());
    m_peer->notifyV2(stopped);
    QVERIFY(spy.wait());
    QCOMPARE(spy.last().first().toUuid(), stopped.planId());
}

void TestPlanProgressList::shouldIgnoreNullEventsAndBadPayloads()
{
    QVERIFY(PlanProgressList::instance()->handleNotificationEvent(nullptr));
    V2::NotificationEvent empty {QSharedPointer<V2::NotificationMessage>()};
    QVERIFY(PlanProgressList::instance()->handleNotificationEvent(&empty));
    QSignalSpy updated(PlanProgressList::instance(), &PlanProgressList::updated);
    V2::NotificationEvent bad {QSharedPointer<V2::NotificationMessage>::create(
        V2::Notification::PlanProgress::TypeId, QByteArray("not json"))};
    QVERIFY(PlanProgressList::instance()->handleNotificationEvent(&bad));
    QCOMPARE(updated.count(), 0);
}

NVB_TEST_MAIN(TestPlanProgressList)
#include "tst_planprogresslist.moc"
