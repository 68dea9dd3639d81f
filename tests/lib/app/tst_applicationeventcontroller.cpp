#include <QSignalSpy>

#include "app/applicationeventcontroller.h"
#include "enginetestpeer.h"
#include "service/connectionmanager.h"
#include "service/notification/format.h"
#include "service/notificationcenter.h"
#include "service/servicelink.h"
#include "stores/defaultsettings.h"
#include "testmain.h"

using namespace NVB::Common::Communication;
using NVB::GUI::ApplicationEventController;
using NvbTest::EngineTestPeer;

class TestApplicationEventController : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void shouldReportPresentConnectionStateOnInit();
    void shouldAnnounceUpdateOncePerNotificationAfterSecondInit();
    void shouldIgnoreOtherAndUnknownNotifications();
    void shouldFollowConnectionLossAndReturn();
    void shouldTakeSettingsTheEngineWrote();

private:
    EngineTestPeer* m_peer = nullptr;
};

void TestApplicationEventController::initTestCase()
{
    m_peer = new EngineTestPeer(this);
    m_peer->exportSocketPath();
    ServiceLink::instance()->client()->setReconnectDelays(10, 50);
    QTRY_VERIFY(ConnectionManager::instance()->isLocalManagmentConnected());
    QVERIFY(m_peer->waitForClient());
}

void TestApplicationEventController::shouldReportPresentConnectionStateOnInit()
{
    ApplicationEventController controller;
    QSignalSpy connected(&controller, &ApplicationEventController::localManagmentConnected);
    QSignalSpy disconnected(&controller, &ApplicationEventController::localManagmentDisconnected);
    QVERIFY(!controller.isInited());
    controller.init();
    QVERIFY(controller.isInited());
    QCOMPARE(connected.count(), 1);
    QCOMPARE(disconnected.count(), 0);
}

void TestApplicationEventController::shouldAnnounceUpdateOncePerNotificationAfterSecondInit()
{
    ApplicationEventController controller;
    QSignalSpy updated(&controller, &ApplicationEventController::updateStarted);
    QSignalSpy connected(&controller, &ApplicationEventController::localManagmentConnected);
    controller.init();
    controller.init();
    QCOMPARE(connected.count(), 1);
    m_peer->notify(Notification::Format::System::UpdateStart::Type);
    QVERIFY(updated.wait());
    QTest::qWait(20);
    QCOMPARE(updated.count(), 1);
}

void TestApplicationEventController::shouldIgnoreOtherAndUnknownNotifications()
{
    ApplicationEventController controller;
    QSignalSpy updated(&controller, &ApplicationEventController::updateStarted);
    controller.init();
    QSignalSpy delivered(NotificationCenter::instance(), &NotificationCenter::notification);
    m_peer->notify(Notification::Format::Plan::Add::Type, {{QStringLiteral("id"), QStringLiteral("{p}")}});
    m_peer->notify(QUuid::createUuid());
    QTRY_COMPARE(delivered.count(), 2);
    QTest::qWait(20);
    QCOMPARE(updated.count(), 0);
}

void TestApplicationEventController::shouldFollowConnectionLossAndReturn()
{
    ApplicationEventController controller;
    controller.init();
    QSignalSpy connected(&controller, &ApplicationEventController::localManagmentConnected);
    QSignalSpy disconnected(&controller, &ApplicationEventController::localManagmentDisconnected);
    m_peer->dropClients();
    QTRY_COMPARE(disconnected.count(), 1);
    QTRY_COMPARE(connected.count(), 1);
}

void TestApplicationEventController::shouldTakeSettingsTheEngineWrote()
{
    ApplicationEventController controller;
    controller.init();
    auto* live = NVB::DefaultSettings::instance();
    const QString moved = QStringLiteral("/srv/moved/nvbackup.db");
    // Written by another process: this one's copy does not know yet.
    QVERIFY(NVB::DefaultSettings(live->filePath(), NVB::DefaultSettings::defaultValues())
                .setValue(QStringLiteral("DatabasePath"), moved));
    QVERIFY(live->value(QStringLiteral("DatabasePath")) != moved);
    m_peer->notify(Notification::Format::System::DefaultSettingsChanged::Type,
        {{QStringLiteral("PropertyName"), QStringLiteral("DatabasePath")}});
    QTRY_COMPARE(live->value(QStringLiteral("DatabasePath")), moved);
}

NVB_TEST_MAIN(TestApplicationEventController)
#include "tst_applicationeventcontroller.moc"
