#include <QJsonArray>
#include <QPointer>
#include <QSignalSpy>
#include <QTimer>

#include "channel/framecodec.h"
#include "enginetestpeer.h"
#include "service/channelerrors.h"
#include "service/commandresult.h"
#include "service/commands/header.h"
#include "service/commands/plan.h"
#include "service/connectionmanager.h"
#include "service/envelope.h"
#include "service/icommand.h"
#include "service/manager.h"
#include "service/servicelink.h"
#include "service/v2/command.h"
#include "service/v2/commandresult.h"
#include "service/v2/commands/getconnection.h"
#include "service/v2/commands/repository/getbunch.h"
#include "testmain.h"

using namespace NVB::Common::Communication;
using NvbTest::EngineTestPeer;
namespace Header = Commands::Format::Header;
namespace PlanFormat = Commands::Format::Plan;

namespace {

// A caller written the way views write their result slots.
class V1Caller : public QObject
{
    Q_OBJECT
public:
    QStringList errors;
    QList<QJsonObject> results;
    QList<QJsonObject> params;
    int calls = 0;

    QPointer<ICommand> send(const QString& name, const QJsonObject& arguments)
    {
        try {
            QPointer<Manager> manager = Manager::instance();
            if (manager.isNull())
                throw QString::fromLatin1(Errors::ManagerMissing);
            ICommand* command = manager->commandFactory(name);
            if (!command)
                throw QString::fromLatin1(Errors::CommandNotRegistered);
            connect(command, &ICommand::complite, this, &V1Caller::onCommandResult);
            connect(command, &ICommand::error, this, &V1Caller::onCommandResult);
            connect(command, &ICommand::timeout, this, &V1Caller::onCommandResult);
            QJsonObject request = command->request().object();
            request.insert(QLatin1String(Header::Params), arguments);
            command->setRequest(QJsonDocument(request));
            command->exec();
            return command;
        } catch (const QString& text) {
            errors.append(text);
        }
        return nullptr;
    }

public slots:
    void onCommandResult()
    {
        auto* command = qobject_cast<ICommand*>(sender());
        if (!command)
            return;
        ++calls;
        try {
            results.append(CommandResult::data(command));
            params.append(CommandResult::params(command));
        } catch (const QString& text) {
            errors.append(text);
        }
        command->deleteLater();
    }
};

class V2Caller : public QObject
{
    Q_OBJECT
public:
    QStringList errors;
    QJsonArray connections;
    int loads = 0;
    bool throwInSlot = false;

    void load()
    {
        ++loads;
        try {
            QPointer<Manager> manager = Manager::instance();
            if (manager.isNull())
                throw QString::fromLatin1(Errors::ManagerMissingV2);
            V2::Command* command = manager->commandFactoryV2(V2::GetConnection::CommandId);
            if (!command)
                throw QString::fromLatin1(Errors::CommandNotRegisteredV2);
            command->setRequest(QSharedPointer<V2::GetConnection::Request>::create());
            connect(command, &V2::Command::complite, this, &V2Caller::onResult, Qt::QueuedConnection);
            connect(command, &V2::Command::error, this, &V2Caller::onResult, Qt::QueuedConnection);
            connect(command, &V2::Command::timeout, this, &V2Caller::onResult, Qt::QueuedConnection);
            lastCommand = command;
            command->exec();
        } catch (const QString& text) {
            errors.append(text);
        }
    }

    QPointer<V2::Command> lastCommand;

private slots:
    void onResult()
    {
        QScopedPointer<V2::Command, QScopedPointerDeleteLater> command(qobject_cast<V2::Command*>(sender()));
        if (!command)
            return;
        try {
            if (throwInSlot)
                throw QStringLiteral("slot failure");
            auto response
                = V2::CommandResult::take<V2::GetConnection::Response>(command.data(), this, [this] { load(); });
            if (!response)
                return;
            connections = response->connections();
        } catch (const QString& text) {
            errors.append(text);
        }
    }
};

} // namespace

class TestCommandChannel : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();
    void shouldReturnNullForUnknownCommands();
    void shouldStampEnvelopeTheCallerNeverSets();
    void shouldDeliverReplyDataAndEchoedParams();
    void shouldPassEngineErrorText();
    void shouldEndTimedOutCommandOnceAsReplyFormatError();
    void shouldKeepWaitingAfterMalformedFrame_data();
    void shouldKeepWaitingAfterMalformedFrame();
    void shouldFailReplyWithWrongValueTypes();
    void shouldFailCommandsInFlightWhenConnectionLost();
    void shouldFailCommandWhileDisconnected();
    void shouldDialAtOnceForCommandDuringBackOff();
    void shouldReadTypedV2Response();
    void shouldMapV2StatusToErrors_data();
    void shouldMapV2StatusToErrors();
    void shouldReloadAfterRetryInterval();
    void shouldDisposeOfV2CommandWhenSlotThrows();

private:
    EngineTestPeer* m_peer = nullptr;
};

void TestCommandChannel::initTestCase()
{
    m_peer = new EngineTestPeer(this);
    m_peer->exportSocketPath();
    QVERIFY(ServiceLink::instance());
    ServiceLink::instance()->client()->setReconnectDelays(10, 50);
    QTRY_VERIFY(ConnectionManager::instance()->isLocalManagmentConnected());
}

void TestCommandChannel::init()
{
    ServiceLink::instance()->setCommandTimeout(5000);
    QTRY_VERIFY(ConnectionManager::instance()->isLocalManagmentConnected());
}

void TestCommandChannel::cleanup()
{
    QTRY_COMPARE(ServiceLink::instance()->pendingCount(), 0);
    V2::CommandResult::setRetryIntervalForTesting(0);
}

void TestCommandChannel::shouldReturnNullForUnknownCommands()
{
    QVERIFY(!Manager::instance()->commandFactory(QStringLiteral("NoSuchCommand")));
    QVERIFY(!Manager::instance()->commandFactoryV2(QUuid::createUuid()));
    ICommand* known = Manager::instance()->commandFactory(QLatin1String(PlanFormat::GetList::Name));
    QVERIFY(known);
    delete known;
}

void TestCommandChannel::shouldStampEnvelopeTheCallerNeverSets()
{
    m_peer->onCommand(QLatin1String(PlanFormat::GetList::Name), EngineTestPeer::Answer::reply({}));
    V1Caller caller;
    const int before = m_peer->requests().size();
    QPointer<ICommand> command = caller.send(QLatin1String(PlanFormat::GetList::Name),
        {{QLatin1String(PlanFormat::GetList::Request::Profile), QStringLiteral("alice")}});
    QVERIFY(command);
    const QUuid id = command->id();
    QVERIFY(m_peer->waitForRequests(before + 1));
    const QJsonObject frame = m_peer->lastRequest(QStringLiteral("PlanGetList"));
    QCOMPARE(frame.value(QStringLiteral("id")).toString(), id.toString());
    QCOMPARE(frame.value(QStringLiteral("type")).toString(), QStringLiteral("request"));
    QCOMPARE(frame.value(QStringLiteral("session_id")).toString(), ServiceLink::instance()->sessionId().toString());
    QCOMPARE(frame.value(QStringLiteral("connection_type")).toInt(), 2);
    QVERIFY(frame.value(QStringLiteral("agent_type")).isString());
    QCOMPARE(frame.value(QStringLiteral("params")).toObject().value(QStringLiteral("profile")).toString(),
        QStringLiteral("alice"));
    QTRY_COMPARE(caller.calls, 1);
}

void TestCommandChannel::shouldDeliverReplyDataAndEchoedParams()
{
    m_peer->onCommand(QLatin1String(PlanFormat::GetInfo::Name), [](const QJsonObject& request) {
        const QString id = request.value(QStringLiteral("params")).toObject().value(QStringLiteral("id")).toString();
        return EngineTestPeer::Answer::reply({{QStringLiteral("planInfo"), QJsonObject {{QStringLiteral("ID"), id}}}});
    });
    V1Caller caller;
    QSignalSpy* complite = nullptr;
    QPointer<ICommand> command
        = caller.send(QLatin1String(PlanFormat::GetInfo::Name), {{QStringLiteral("id"), QStringLiteral("{p1}")}});
    QVERIFY(command);
    complite = new QSignalSpy(command.data(), &ICommand::complite);
    QTRY_COMPARE(caller.calls, 1);
    QCOMPARE(complite->count(), 1);
    delete complite;
    QVERIFY(caller.errors.isEmpty());
    QCOMPARE(caller.results.first().value(QStringLiteral("planInfo")).toObject().value(QStringLiteral("ID")).toString(),
        QStringLiteral("{p1}"));
    QCOMPARE(caller.params.first().value(QStringLiteral("id")).toString(), QStringLiteral("{p1}"));
    QTRY_VERIFY(command.isNull());
}

void TestCommandChannel::shouldPassEngineErrorText()
{
    m_peer->onCommand(
        QLatin1String(PlanFormat::Remove::Name), EngineTestPeer::Answer::error(QStringLiteral("Plan is running")));
    V1Caller caller;
    QVERIFY(caller.send(QLatin1String(PlanFormat::Remove::Name), {}));
    QTRY_COMPARE(caller.calls, 1);
    QCOMPARE(caller.errors, QStringList {QStringLiteral("Plan is running")});
}

void TestCommandChannel::shouldEndTimedOutCommandOnceAsReplyFormatError()
{
    ServiceLink::instance()->setCommandTimeout(100);
    QJsonObject held;
    m_peer->onCommand(QLatin1String(PlanFormat::GetXML::Name), [&held](const QJsonObject& request) {
        held = request;
        return EngineTestPeer::Answer::silence();
    });
    V1Caller caller;
    QPointer<ICommand> command = caller.send(QLatin1String(PlanFormat::GetXML::Name), {});
    QVERIFY(command);
    QSignalSpy timeout(command.data(), &ICommand::timeout);
    QSignalSpy complite(command.data(), &ICommand::complite);
    QSignalSpy error(command.data(), &ICommand::error);
    QTRY_COMPARE(caller.calls, 1);
    QCOMPARE(timeout.count(), 1);
    QCOMPARE(complite.count() + error.count(), 0);
    QCOMPARE(caller.errors, QStringList {QStringLiteral("Local command reply format error")});
    // A reply that comes too late ends nothing a second time.
    m_peer->sendFrame(NVB::Common::Communication::Envelope::reply(held, {}));
    QTest::qWait(50);
    QCOMPARE(caller.calls, 1);
}

void TestCommandChannel::shouldKeepWaitingAfterMalformedFrame_data()
{
    QTest::addColumn<QByteArray>("raw");
    QTest::newRow("not JSON") << NVB::Channel::FrameCodec::encodeRaw("{\"type\":\"reply\",");
    QTest::newRow("not an object") << NVB::Channel::FrameCodec::encodeRaw("[\"reply\"]");
    QTest::newRow("no type") << NVB::Channel::FrameCodec::encode({{QStringLiteral("id"), 1}});
    QTest::newRow("unknown type") << NVB::Channel::FrameCodec::encode({{QStringLiteral("type"), QStringLiteral("x")}});
    QTest::newRow("reply without id") << NVB::Channel::FrameCodec::encode(
        {{QStringLiteral("type"), QStringLiteral("reply")}});
}

void TestCommandChannel::shouldKeepWaitingAfterMalformedFrame()
{
    QFETCH(QByteArray, raw);
    QJsonObject held;
    m_peer->onCommand(QLatin1String(PlanFormat::GetXML::Name), [&](const QJsonObject& request) {
        held = request;
        return EngineTestPeer::Answer::raw(raw);
    });
    V1Caller caller;
    QVERIFY(caller.send(QLatin1String(PlanFormat::GetXML::Name), {}));
    QTRY_VERIFY(!held.isEmpty());
    QTest::qWait(30);
    QCOMPARE(caller.calls, 0);
    // The stream survived the bad frame: the real reply still gets through.
    m_peer->sendFrame(
        NVB::Common::Communication::Envelope::reply(held, {{QStringLiteral("planXML"), QStringLiteral("<x/>")}}));
    QTRY_COMPARE(caller.calls, 1);
    QVERIFY(caller.errors.isEmpty());
    QCOMPARE(caller.results.first().value(QStringLiteral("planXML")).toString(), QStringLiteral("<x/>"));
}

void TestCommandChannel::shouldFailReplyWithWrongValueTypes()
{
    m_peer->onCommand(QLatin1String(PlanFormat::GetXML::Name), [](const QJsonObject& request) {
        QJsonObject reply = NVB::Common::Communication::Envelope::reply(request, {});
        reply.insert(QStringLiteral("data"), QStringLiteral("not an object"));
        return EngineTestPeer::Answer::raw(NVB::Channel::FrameCodec::encode(reply));
    });
    V1Caller caller;
    QPointer<ICommand> command = caller.send(QLatin1String(PlanFormat::GetXML::Name), {});
    QSignalSpy error(command.data(), &ICommand::error);
    QTRY_COMPARE(caller.calls, 1);
    QCOMPARE(error.count(), 1);
    QCOMPARE(caller.errors, QStringList {QStringLiteral("Local command reply format error")});
}

void TestCommandChannel::shouldFailCommandsInFlightWhenConnectionLost()
{
    QSignalSpy down(ConnectionManager::instance(), &ConnectionManager::localManagmentDisconnected);
    QSignalSpy up(ConnectionManager::instance(), &ConnectionManager::localManagmentConnected);
    m_peer->onCommand(QLatin1String(PlanFormat::GetXML::Name), EngineTestPeer::Answer::silence());
    m_peer->onCommand(QLatin1String(PlanFormat::GetList::Name), EngineTestPeer::Answer::close());
    V1Caller caller;
    V2Caller caller2;
    m_peer->onCommandV2(V2::GetConnection::CommandId, EngineTestPeer::Answer::silence());
    QVERIFY(caller.send(QLatin1String(PlanFormat::GetXML::Name), {}));
    caller2.load();
    QTRY_COMPARE(ServiceLink::instance()->pendingCount(), 2);
    QVERIFY(caller.send(QLatin1String(PlanFormat::GetList::Name), {}));
    QTRY_COMPARE(caller.calls, 2);
    QCOMPARE(caller.errors.count(QStringLiteral("Local command reply format error")), 2);
    QTRY_COMPARE(caller2.errors, QStringList {QStringLiteral("Internal error")});
    QTRY_COMPARE(down.count(), 1);
    QTRY_COMPARE(up.count(), 1);
    QVERIFY(ConnectionManager::instance()->isLocalManagmentConnected());
}

void TestCommandChannel::shouldFailCommandWhileDisconnected()
{
    m_peer->stopListening();
    m_peer->dropClients();
    QTRY_VERIFY(!ConnectionManager::instance()->isLocalManagmentConnected());
    QTRY_VERIFY(ServiceLink::instance()->client()->state() == NVB::Channel::ChannelClient::State::Disconnected);
    V1Caller caller;
    QPointer<ICommand> command = caller.send(QLatin1String(PlanFormat::GetList::Name), {});
    QVERIFY(command);
    // Never inside exec(): the caller's code after exec() runs first.
    QCOMPARE(caller.calls, 0);
    QTRY_COMPARE(caller.calls, 1);
    QCOMPARE(caller.errors, QStringList {QStringLiteral("Local command reply format error")});
    QVERIFY(m_peer->listen());
    QTRY_VERIFY(ConnectionManager::instance()->isLocalManagmentConnected());
}

void TestCommandChannel::shouldDialAtOnceForCommandDuringBackOff()
{
    ServiceLink::instance()->client()->setReconnectDelays(60000, 60000);
    m_peer->stopListening();
    m_peer->dropClients();
    QTRY_VERIFY(!ConnectionManager::instance()->isLocalManagmentConnected());
    QVERIFY(m_peer->listen());
    m_peer->onCommand(QLatin1String(PlanFormat::GetList::Name),
        EngineTestPeer::Answer::reply({{QStringLiteral("planList"), QJsonArray()}}));
    V1Caller caller;
    QVERIFY(caller.send(QLatin1String(PlanFormat::GetList::Name), {}));
    QTRY_COMPARE_WITH_TIMEOUT(caller.calls, 1, 3000);
    QVERIFY(caller.errors.isEmpty());
    ServiceLink::instance()->client()->setReconnectDelays(10, 50);
}

void TestCommandChannel::shouldReadTypedV2Response()
{
    const QJsonArray connections {QJsonObject {{QStringLiteral("id"), QUuid::createUuid().toString()}}};
    m_peer->onCommandV2(
        V2::GetConnection::CommandId, EngineTestPeer::Answer::v2(2, {{QStringLiteral("connections"), connections}}));
    V2Caller caller;
    caller.load();
    QTRY_COMPARE(caller.connections, connections);
    QVERIFY(caller.errors.isEmpty());
    const QJsonObject frame = m_peer->lastRequest();
    QCOMPARE(frame.value(QStringLiteral("type")).toString(), QStringLiteral("request2"));
    QCOMPARE(QUuid(frame.value(QStringLiteral("command_id")).toString()), V2::GetConnection::CommandId);
}

void TestCommandChannel::shouldMapV2StatusToErrors_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<QJsonObject>("response");
    QTest::addColumn<QString>("error");
    QTest::newRow("engine error") << 3 << QJsonObject() << QStringLiteral("Storage is offline");
    QTest::newRow("licence") << 4 << QJsonObject() << QStringLiteral("Internal error");
    QTest::newRow("unknown status") << 7 << QJsonObject() << QStringLiteral("Internal error");
    QTest::newRow("wrong response types") << 2 << QJsonObject {{QStringLiteral("connections"), 5}}
                                          << QStringLiteral("Internal error: invalid command response format");
}

void TestCommandChannel::shouldMapV2StatusToErrors()
{
    QFETCH(int, status);
    QFETCH(QJsonObject, response);
    QFETCH(QString, error);
    m_peer->onCommandV2(
        V2::GetConnection::CommandId, EngineTestPeer::Answer::v2(status, response, status == 3 ? error : QString()));
    V2Caller caller;
    caller.load();
    QTRY_COMPARE(caller.errors, QStringList {error});
    QCOMPARE(caller.loads, 1);
}

void TestCommandChannel::shouldReloadAfterRetryInterval()
{
    int asked = 0;
    const QJsonArray connections {QJsonObject {{QStringLiteral("id"), QStringLiteral("{c}")}}};
    m_peer->onCommandV2(V2::GetConnection::CommandId, [&](const QJsonObject&) {
        return ++asked < 3 ? EngineTestPeer::Answer::v2(5)
                           : EngineTestPeer::Answer::v2(2, {{QStringLiteral("connections"), connections}});
    });
    V2Caller caller;
    caller.load();
    // "Need retry" is no error: one single shot, a minute away.
    QTRY_VERIFY(caller.lastCommand.isNull());
    const QList<QTimer*> timers = caller.findChildren<QTimer*>();
    QCOMPARE(timers.size(), 1);
    QVERIFY(timers.first()->isActive() && timers.first()->isSingleShot());
    QCOMPARE(timers.first()->interval(), 60000);
    QVERIFY(caller.errors.isEmpty());
    V2::CommandResult::setRetryIntervalForTesting(20);
    timers.first()->start(20);
    QTRY_COMPARE(caller.connections, connections);
    QCOMPARE(caller.loads, 3);
    QVERIFY(caller.errors.isEmpty());
}

void TestCommandChannel::shouldDisposeOfV2CommandWhenSlotThrows()
{
    m_peer->onCommandV2(V2::GetConnection::CommandId, EngineTestPeer::Answer::v2(2));
    V2Caller caller;
    caller.throwInSlot = true;
    caller.load();
    QPointer<V2::Command> command = caller.lastCommand;
    QVERIFY(command);
    QTRY_COMPARE(caller.errors, QStringList {QStringLiteral("slot failure")});
    QTRY_VERIFY(command.isNull());
}

NVB_TEST_GUILESS_MAIN(TestCommandChannel)
#include "tst_commandchannel.moc"
