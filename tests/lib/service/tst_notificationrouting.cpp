#include <functional>
#include <memory>

#include <QSignalSpy>

#include "enginetestpeer.h"
#include "service/connectionmanager.h"
#include "service/notification/format.h"
#include "service/notification/iparser.h"
#include "service/notification/parserfactory.h"
#include "service/notificationcenter.h"
#include "service/servicelink.h"
#include "service/v2/notification/addednewbunch.h"
#include "service/v2/notification/removedbunch.h"
#include "service/v2/notification/updatebunch.h"
#include "service/v2/notificationevent.h"
#include "service/v2/notificationsubscriber.h"
#include "service/v2/subscriberregistry.h"
#include "testmain.h"

using namespace NVB::Common::Communication;
using NvbTest::EngineTestPeer;
namespace Format = Notification::Format;

namespace {

// A V1 listener written the way caches write theirs: it tests one type.
class V1Listener : public QObject
{
    Q_OBJECT
public:
    explicit V1Listener(const QUuid& type)
        : m_type(type)
    {
        connect(NotificationCenter::instance(), &NotificationCenter::notification, this, &V1Listener::onNotification);
    }
    QList<QMap<QString, QVariant>> heard;

private slots:
    void onNotification(const QJsonDocument& document)
    {
        std::unique_ptr<Notification::IParser> parser(Notification::ParserFactory::instance().create(document));
        if (!parser)
            return;
        if (parser->type() == m_type)
            heard.append(parser->message());
    }

private:
    QUuid m_type;
};

class Subscriber : public V2::NotificationSubscriber
{
public:
    explicit Subscriber(const QList<QUuid>& types)
        : V2::NotificationSubscriber(types)
    { }
    bool handleNotificationEvent(V2::NotificationEvent* event) override
    {
        if (!event || !event->message())
            return true;
        types.append(event->message()->type());
        if (onEvent)
            onEvent(event);
        return true;
    }
    QList<QUuid> types;
    std::function<void(V2::NotificationEvent*)> onEvent;
};

} // namespace

class TestNotificationRouting : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void shouldRecogniseOnlyKnownNotifications_data();
    void shouldRecogniseOnlyKnownNotifications();
    void shouldReadMissingMessageKeyAsEmpty();
    void shouldDeliverV1NotificationFromEngine();
    void shouldReachBothListenersOfSharedType();
    void shouldDropMalformedNotifications();
    void shouldCallSubscribersOnlyForTheirTypes();
    void shouldReadTypedPayloadFromEngine();
    void shouldNotCallSubscriberDestroyedDuringDelivery();
    void shouldNotCallSubscriberAddedDuringDeliveryUntilNext();
    void shouldForgetSubscriberOnDestruction();
    void shouldGiveNoPayloadForUnreadableBytes();

private:
    EngineTestPeer* m_peer = nullptr;
};

void TestNotificationRouting::initTestCase()
{
    m_peer = new EngineTestPeer(this);
    m_peer->exportSocketPath();
    QVERIFY(NotificationCenter::instance());
    QTRY_VERIFY(ConnectionManager::instance()->isLocalManagmentConnected());
    // Notifications only reach clients the peer has accepted.
    QVERIFY(m_peer->waitForClient());
}

void TestNotificationRouting::shouldRecogniseOnlyKnownNotifications_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<bool>("known");
    QTest::addColumn<QUuid>("type");
    QTest::newRow("plan add") << QByteArray(R"({"type":"{ca927cb1-de60-46c1-a978-cda7a44bbf01}","Message":{"id":"x"}})")
                              << true << QUuid(Format::Plan::Add::Type);
    QTest::newRow("upper-case type") << QByteArray(R"({"type":"{CA927CB1-DE60-46C1-A978-CDA7A44BBF01}"})") << true
                                     << QUuid(Format::Plan::Add::Type);
    QTest::newRow("close all without message") << QByteArray(R"({"type":"{23d7ef70-3337-4dc9-babc-d122daf685ad}"})")
                                               << true << QUuid(Format::System::CloseAll::Type);
    QTest::newRow("unknown type") << QByteArray(R"({"type":"{00000000-1111-2222-3333-444444444444}"})") << false
                                  << QUuid();
    QTest::newRow("type not a uuid") << QByteArray(R"({"type":"reply"})") << false << QUuid();
    QTest::newRow("type not a string") << QByteArray(R"({"type":5})") << false << QUuid();
    QTest::newRow("message not an object")
        << QByteArray(R"({"type":"{ca927cb1-de60-46c1-a978-cda7a44bbf01}","Message":[1]})") << false << QUuid();
    QTest::newRow("array document") << QByteArray("[]") << false << QUuid();
}

void TestNotificationRouting::shouldRecogniseOnlyKnownNotifications()
{
    QFETCH(QByteArray, json);
    QFETCH(bool, known);
    QFETCH(QUuid, type);
    std::unique_ptr<Notification::IParser> parser(
        Notification::ParserFactory::instance().create(QJsonDocument::fromJson(json)));
    QCOMPARE(bool(parser), known);
    if (parser)
        QCOMPARE(parser->type(), type);
}

void TestNotificationRouting::shouldReadMissingMessageKeyAsEmpty()
{
    const QJsonDocument document(QJsonObject {{QStringLiteral("type"), Format::Plan::StateChange::Type.toString()},
        {QStringLiteral("Message"), QJsonObject {{QStringLiteral("id"), QStringLiteral("{p}")}}}});
    std::unique_ptr<Notification::IParser> parser(Notification::ParserFactory::instance().create(document));
    QVERIFY(parser);
    QCOMPARE(parser->message().value(QLatin1String(Format::Plan::StateChange::Id)).toString(), QStringLiteral("{p}"));
    QVERIFY(!parser->message().value(QLatin1String(Format::Plan::StateChange::State)).isValid());
}

void TestNotificationRouting::shouldDeliverV1NotificationFromEngine()
{
    V1Listener listener(Format::Plan::StateChange::Type);
    V1Listener other(Format::Plan::Add::Type);
    m_peer->notify(Format::Plan::StateChange::Type,
        {{QLatin1String(Format::Plan::StateChange::Id), QStringLiteral("{p}")},
            {QLatin1String(Format::Plan::StateChange::State), 1},
            {QLatin1String(Format::Plan::StateChange::LastState), 0}});
    QTRY_COMPARE(listener.heard.size(), 1);
    QCOMPARE(listener.heard.first().value(QStringLiteral("state")).toInt(), 1);
    QCOMPARE(listener.heard.first().value(QStringLiteral("last_state")).toInt(), 0);
    QCOMPARE(other.heard.size(), 0);
}

void TestNotificationRouting::shouldReachBothListenersOfSharedType()
{
    // Two names of one type: each listener tests for its own name.
    const QUuid first = Format::System::DefaultSettingsChanged::Type;
    const QUuid second = Format::System::RebrandingOptionsChanged::Type;
    QCOMPARE(first, second);
    V1Listener one(first);
    V1Listener two(second);
    m_peer->notify(first, {{QStringLiteral("message"), QStringLiteral("42%")}});
    QTRY_COMPARE(one.heard.size(), 1);
    QTRY_COMPARE(two.heard.size(), 1);
}

void TestNotificationRouting::shouldDropMalformedNotifications()
{
    QSignalSpy v1(NotificationCenter::instance(), &NotificationCenter::notification);
    QSignalSpy v2(NotificationCenter::instance(), &NotificationCenter::notificationV2);
    m_peer->sendFrame({{QStringLiteral("type"), Format::Plan::Add::Type.toString()}, {QStringLiteral("Message"), 3}});
    m_peer->sendFrame({{QStringLiteral("type"), QStringLiteral("notification2")}, {QStringLiteral("type_id"), 3}});
    m_peer->sendFrame({{QStringLiteral("type"), QStringLiteral("notification2")},
        {QStringLiteral("type_id"), QUuid::createUuid().toString()},
        {QStringLiteral("payload"), QStringLiteral("text")}});
    // A well-formed one behind them proves the stream went on.
    m_peer->notify(Format::Plan::Add::Type, {{QStringLiteral("id"), QStringLiteral("{p}")}});
    QTRY_COMPARE(v1.count(), 1);
    QCOMPARE(v2.count(), 0);
}

void TestNotificationRouting::shouldCallSubscribersOnlyForTheirTypes()
{
    using namespace V2::Notification;
    Subscriber bunches({UpdateBunch::TypeId, RemovedBunch::TypeId});
    Subscriber added({AddedNewBunch::TypeId});
    QSignalSpy v2(NotificationCenter::instance(), &NotificationCenter::notificationV2);
    m_peer->notifyV2(RemovedBunch());
    m_peer->notifyV2(AddedNewBunch());
    QTRY_COMPARE(v2.count(), 2);
    QCOMPARE(bunches.types, QList<QUuid> {RemovedBunch::TypeId});
    QCOMPARE(added.types, QList<QUuid> {AddedNewBunch::TypeId});
}

void TestNotificationRouting::shouldReadTypedPayloadFromEngine()
{
    using namespace V2::Notification;
    Subscriber subscriber({UpdateBunch::TypeId});
    QSharedPointer<UpdateBunch> received;
    subscriber.onEvent = [&](V2::NotificationEvent* event) { received = event->message()->data<UpdateBunch>(); };
    UpdateBunch sent;
    sent.setBunchId(QUuid::createUuid());
    sent.setConnectionId(QUuid::createUuid());
    m_peer->notifyV2(sent);
    QTRY_VERIFY(received);
    QCOMPARE(received->bunchId(), sent.bunchId());
    QCOMPARE(received->connectionId(), sent.connectionId());
}

void TestNotificationRouting::shouldNotCallSubscriberDestroyedDuringDelivery()
{
    using namespace V2::Notification;
    Subscriber first({UpdateBunch::TypeId});
    auto* second = new Subscriber({UpdateBunch::TypeId});
    Subscriber third({UpdateBunch::TypeId});
    int secondCalls = 0;
    second->onEvent = [&](V2::NotificationEvent*) { ++secondCalls; };
    // The first subscriber's handler destroys the second before its turn.
    first.onEvent = [&](V2::NotificationEvent*) {
        delete second;
        second = nullptr;
    };
    auto message = QSharedPointer<V2::NotificationMessage>::create();
    message->setData(UpdateBunch());
    NotificationCenter::instance()->deliverV2(message);
    QCOMPARE(first.types.size(), 1);
    QVERIFY(!second);
    QCOMPARE(secondCalls, 0);
    QCOMPARE(third.types.size(), 1);
}

void TestNotificationRouting::shouldNotCallSubscriberAddedDuringDeliveryUntilNext()
{
    using namespace V2::Notification;
    Subscriber first({UpdateBunch::TypeId});
    std::unique_ptr<Subscriber> late;
    first.onEvent = [&](V2::NotificationEvent*) {
        if (!late)
            late = std::make_unique<Subscriber>(QList<QUuid> {UpdateBunch::TypeId});
    };
    auto message = QSharedPointer<V2::NotificationMessage>::create();
    message->setData(UpdateBunch());
    NotificationCenter::instance()->deliverV2(message);
    QVERIFY(late);
    QCOMPARE(late->types.size(), 0);
    NotificationCenter::instance()->deliverV2(message);
    QCOMPARE(late->types.size(), 1);
    QCOMPARE(first.types.size(), 2);
}

void TestNotificationRouting::shouldForgetSubscriberOnDestruction()
{
    using namespace V2::Notification;
    const int before = V2::SubscriberRegistry::instance().subscriberCount(RemovedBunch::TypeId);
    {
        Subscriber subscriber({RemovedBunch::TypeId, RemovedBunch::TypeId});
        QCOMPARE(V2::SubscriberRegistry::instance().subscriberCount(RemovedBunch::TypeId), before + 1);
    }
    QCOMPARE(V2::SubscriberRegistry::instance().subscriberCount(RemovedBunch::TypeId), before);
}

void TestNotificationRouting::shouldGiveNoPayloadForUnreadableBytes()
{
    const V2::NotificationMessage broken(V2::Notification::UpdateBunch::TypeId, QByteArray("not json"));
    QVERIFY(!broken.data<V2::Notification::UpdateBunch>());
}

NVB_TEST_GUILESS_MAIN(TestNotificationRouting)
#include "tst_notificationrouting.moc"
