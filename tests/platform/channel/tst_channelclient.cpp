#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtEndian>

#include "channel/channelclient.h"
#include "channel/framecodec.h"
#include "channel/frameserver.h"
#include "channel/framesocket.h"
#include "channel/socketpath.h"
#include "core/apppath.h"
#include "testmain.h"

using namespace NVB::Channel;

// Client and server ends over a real socket in a temporary directory.
class TestChannelClient : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void shouldUseRuntimeDirectoryUnlessOverridden();
    void shouldExchangeFramesBothWays();
    void shouldReconnectAfterServerCloses();
    void shouldBackOffWhileNoServerListens();
    void shouldCloseAndRedialBrokenStream();

private:
    FrameSocket* acceptOne();

    QTemporaryDir* m_dir = nullptr;
    FrameServer* m_server = nullptr;
    ChannelClient* m_client = nullptr;
    QList<FrameSocket*> m_accepted;
};

void TestChannelClient::init()
{
    m_dir = new QTemporaryDir;
    m_server = new FrameServer;
    connect(m_server, &FrameServer::newConnection, this, [this](FrameSocket* socket) { m_accepted.append(socket); });
    QVERIFY(m_server->listen(m_dir->path() + QStringLiteral("/s.sock")));
    m_client = new ChannelClient(m_dir->path() + QStringLiteral("/s.sock"));
    m_client->setReconnectDelays(10, 80);
}

void TestChannelClient::cleanup()
{
    delete m_client;
    delete m_server;
    delete m_dir;
    m_accepted.clear();
}

FrameSocket* TestChannelClient::acceptOne()
{
    const int before = m_accepted.size();
    if (!QTest::qWaitFor([&] { return m_accepted.size() > before; }, 5000))
        return nullptr;
    return m_accepted.last();
}

void TestChannelClient::shouldUseRuntimeDirectoryUnlessOverridden()
{
    qunsetenv(SocketPath::EnvironmentVariable);
    QCOMPARE(SocketPath::engine(), NVB::Defines::AppPath::to().runtime() + QStringLiteral("/engine.sock"));
    qputenv(SocketPath::EnvironmentVariable, "/tmp/elsewhere.sock");
    QCOMPARE(SocketPath::engine(), QStringLiteral("/tmp/elsewhere.sock"));
    qputenv(SocketPath::EnvironmentVariable, "");
    QCOMPARE(SocketPath::engine(), NVB::Defines::AppPath::to().runtime() + QStringLiteral("/engine.sock"));
}

void TestChannelClient::shouldExchangeFramesBothWays()
{
    QSignalSpy connected(m_client, &ChannelClient::connected);
    QSignalSpy received(m_client, &ChannelClient::frameReceived);
    m_client->start();
    FrameSocket* server = acceptOne();
    QVERIFY(server);
    QVERIFY(connected.count() == 1 || connected.wait());
    QVERIFY(m_client->isConnected());

    QSignalSpy serverReceived(server, &FrameSocket::frameReceived);
    QVERIFY(m_client->send(QJsonObject {{QStringLiteral("q"), 1}}));
    QVERIFY(serverReceived.wait());
    QCOMPARE(serverReceived.first().first().toJsonObject().value(QStringLiteral("q")).toInt(), 1);

    QVERIFY(server->send(QJsonObject {{QStringLiteral("a"), 2}}));
    QVERIFY(received.wait());
    QCOMPARE(received.first().first().toJsonObject().value(QStringLiteral("a")).toInt(), 2);
}

void TestChannelClient::shouldReconnectAfterServerCloses()
{
    QSignalSpy connected(m_client, &ChannelClient::connected);
    QSignalSpy disconnected(m_client, &ChannelClient::disconnected);
    m_client->start();
    FrameSocket* server = acceptOne();
    QVERIFY(server);
    QTRY_COMPARE(connected.count(), 1);

    server->socket()->abort();
    QTRY_COMPARE(disconnected.count(), 1);
    QVERIFY(!m_client->isConnected());
    QVERIFY(!m_client->send(QJsonObject {}));
    QVERIFY(acceptOne());
    QTRY_COMPARE(connected.count(), 2);
    QVERIFY(m_client->isConnected());
}

void TestChannelClient::shouldBackOffWhileNoServerListens()
{
    m_server->close();
    QSignalSpy failed(m_client, &ChannelClient::connectFailed);
    m_client->start();
    QTRY_VERIFY_WITH_TIMEOUT(failed.count() >= 4, 5000);
    QList<int> delays;
    for (const auto& args : failed)
        delays.append(args.at(1).toInt());
    QCOMPARE(delays.mid(0, 4), (QList<int> {10, 20, 40, 80}));

    QVERIFY(m_server->listen(m_dir->path() + QStringLiteral("/s.sock")));
    QSignalSpy connected(m_client, &ChannelClient::connected);
    QVERIFY(connected.wait(2000));
    QCOMPARE(m_client->currentDelay(), 10);
}

void TestChannelClient::shouldCloseAndRedialBrokenStream()
{
    QSignalSpy connected(m_client, &ChannelClient::connected);
    QSignalSpy disconnected(m_client, &ChannelClient::disconnected);
    QSignalSpy received(m_client, &ChannelClient::frameReceived);
    m_client->start();
    FrameSocket* server = acceptOne();
    QVERIFY(server);
    QTRY_COMPARE(connected.count(), 1);

    QByteArray header(4, '\0');
    qToBigEndian<quint32>(FrameCodec::MaxFrameSize + 1, header.data());
    server->sendRaw(header + QByteArray(100, 'x'));
    QTRY_COMPARE(disconnected.count(), 1);
    QTRY_COMPARE(connected.count(), 2);
    QCOMPARE(received.count(), 0);
}

NVB_TEST_GUILESS_MAIN(TestChannelClient)
#include "tst_channelclient.moc"
