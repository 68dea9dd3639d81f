// Round trips of V1 commands through the real socket, codec and command
// objects, side by side with raw local-socket echoes of the same size, and V1
// notifications delivered to 100 listeners. The serving end runs in its own
// thread in both cases, as the engine runs in its own process.

#include <cstdio>
#include <memory>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QJsonObject>
#include <QLocalServer>
#include <QLocalSocket>
#include <QTemporaryDir>
#include <QThread>

#include "channel/framecodec.h"
#include "channel/frameserver.h"
#include "channel/framesocket.h"
#include "service/commands/header.h"
#include "service/commands/plan.h"
#include "service/connectionmanager.h"
#include "service/envelope.h"
#include "service/icommand.h"
#include "service/manager.h"
#include "service/notification/format.h"
#include "service/notification/iparser.h"
#include "service/notification/parserfactory.h"
#include "service/notificationcenter.h"

using namespace NVB::Common::Communication;

namespace {

constexpr int WarmUp = 200;
constexpr int RoundTrips = 5000;
constexpr int Rounds = 5;
constexpr int Notifications = 20000;
constexpr int Listeners = 100;

// Echoes every byte straight back.
class EchoServer : public QObject
{
public:
    explicit EchoServer(const QString& path)
    {
        QLocalServer::removeServer(path);
        m_server.listen(path);
        connect(&m_server, &QLocalServer::newConnection, this, [this] {
            while (QLocalSocket* socket = m_server.nextPendingConnection())
                connect(socket, &QLocalSocket::readyRead, socket, [socket] { socket->write(socket->readAll()); });
        });
    }

private:
    QLocalServer m_server;
};

// Answers every V1 command with a success reply and, when asked by a command
// named "GetList", pushes a burst of notifications.
class EngineServer : public QObject
{
public:
    explicit EngineServer(const QString& path)
    {
        m_server.listen(path);
        connect(&m_server, &NVB::Channel::FrameServer::newConnection, this, [](NVB::Channel::FrameSocket* socket) {
            connect(socket, &NVB::Channel::FrameSocket::frameReceived, socket, [socket](const QJsonObject& request) {
                const QJsonObject params = request.value(QStringLiteral("params")).toObject();
                const int burst = params.value(QStringLiteral("burst")).toInt();
                if (burst > 0) {
                    const QJsonObject message {{QStringLiteral("id"), QStringLiteral("{plan}")}};
                    for (int i = 0; i < burst; ++i)
                        socket->send(Envelope::notification(Notification::Format::Plan::Update::Type, message));
                }
                socket->send(Envelope::reply(request, {{QStringLiteral("planInfo"), params}}));
            });
        });
    }

private:
    NVB::Channel::FrameServer m_server;
};

template<typename Server> class ServerThread
{
public:
    explicit ServerThread(const QString& path)
    {
        m_context.moveToThread(&m_thread);
        m_thread.start();
        QMetaObject::invokeMethod(
            &m_context, [this, path] { m_server = std::make_unique<Server>(path); }, Qt::BlockingQueuedConnection);
    }
    ~ServerThread()
    {
        QMetaObject::invokeMethod(
            &m_context, [this] { m_server.reset(); }, Qt::BlockingQueuedConnection);
        m_thread.quit();
        m_thread.wait();
    }

private:
    struct Context : QObject
    {
    };
    QThread m_thread;
    Context m_context;
    std::unique_ptr<Server> m_server;
};

QJsonObject payload()
{
    return {{QStringLiteral("id"), QStringLiteral("{5858de33-ec0e-4cf1-9c31-b53f76178606}")},
        {QStringLiteral("profile"), QStringLiteral("user")}};
}

double rawEchoRate(const QString& path, int frameSize)
{
    QLocalSocket socket;
    socket.connectToServer(path);
    if (!socket.waitForConnected(5000))
        return 0;
    const QByteArray message(frameSize, 'x');
    QEventLoop loop;
    int done = 0;
    int target = WarmUp;
    qint64 received = 0;
    QElapsedTimer timer;
    QObject::connect(&socket, &QLocalSocket::readyRead, &loop, [&] {
        received += socket.readAll().size();
        while (received >= frameSize) {
            received -= frameSize;
            if (++done == target) {
                loop.quit();
                return;
            }
            socket.write(message);
        }
    });
    socket.write(message);
    loop.exec();
    done = 0;
    target = RoundTrips;
    timer.start();
    socket.write(message);
    loop.exec();
    return RoundTrips * 1000.0 / qMax<qint64>(1, timer.elapsed());
}

class CommandLoop : public QObject
{
public:
    int done = 0;
    int target = 0;
    int failures = 0;
    QEventLoop loop;

    void sendOne(const QJsonObject& params)
    {
        ICommand* command = Manager::instance()->commandFactory(QLatin1String(Commands::Format::Plan::GetInfo::Name));
        connect(command, &ICommand::complite, this, [this, command] { finish(command); });
        connect(command, &ICommand::error, this, [this, command] { finish(command); });
        connect(command, &ICommand::timeout, this, [this, command] { finish(command); });
        QJsonObject request = command->request().object();
        request.insert(QLatin1String(Commands::Format::Header::Params), params);
        command->setRequest(QJsonDocument(request));
        command->exec();
    }

    void finish(ICommand* command)
    {
        if (!command->isComplite() || command->isReplyError())
            ++failures;
        command->deleteLater();
        if (++done == target)
            loop.quit();
        else
            sendOne(payload());
    }
};

double commandRate(int& failures)
{
    CommandLoop commands;
    commands.target = WarmUp;
    commands.sendOne(payload());
    commands.loop.exec();
    commands.done = 0;
    commands.target = RoundTrips;
    QElapsedTimer timer;
    timer.start();
    commands.sendOne(payload());
    commands.loop.exec();
    failures = commands.failures;
    return RoundTrips * 1000.0 / qMax<qint64>(1, timer.elapsed());
}

// A listener written like the caches: parse, test the type, read a key.
class Listener : public QObject
{
public:
    int heard = 0;
    void onNotification(const QJsonDocument& document)
    {
        std::unique_ptr<Notification::IParser> parser(Notification::ParserFactory::instance().create(document));
        if (parser && parser->type() == Notification::Format::Plan::Update::Type
            && !parser->message().value(QStringLiteral("id")).toString().isEmpty())
            ++heard;
    }
};

double notificationRate(bool& complete)
{
    std::vector<std::unique_ptr<Listener>> listeners;
    for (int i = 0; i < Listeners; ++i) {
        listeners.push_back(std::make_unique<Listener>());
        Listener* listener = listeners.back().get();
        QObject::connect(NotificationCenter::instance(), &NotificationCenter::notification, listener,
            [listener](const QJsonDocument& document) { listener->onNotification(document); });
    }
    CommandLoop trigger;
    trigger.target = 1;
    QElapsedTimer timer;
    timer.start();
    trigger.sendOne({{QStringLiteral("burst"), Notifications}});
    trigger.loop.exec();
    const double rate = Notifications * 1000.0 / qMax<qint64>(1, timer.elapsed());
    complete = true;
    for (const auto& listener : listeners)
        complete = complete && listener->heard == Notifications;
    return rate;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QTemporaryDir dir;
    const QString enginePath = dir.path() + QStringLiteral("/engine.sock");
    const QString echoPath = dir.path() + QStringLiteral("/echo.sock");
    qputenv("NVB_ENGINE_SOCKET", enginePath.toUtf8());
    qputenv("NVB_LOG_LEVEL", "error");

    ServerThread<EngineServer> engine(enginePath);
    ServerThread<EchoServer> echo(echoPath);

    QElapsedTimer wait;
    wait.start();
    while (!ConnectionManager::instance()->isLocalManagmentConnected() && wait.elapsed() < 5000)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    if (!ConnectionManager::instance()->isLocalManagmentConnected()) {
        std::fprintf(stderr, "cannot reach the benchmark engine\n");
        return 1;
    }

    // The echo carries as many bytes as a command's request frame.
    ICommand* probe = Manager::instance()->commandFactory(QLatin1String(Commands::Format::Plan::GetInfo::Name));
    QJsonObject request = probe->request().object();
    request.insert(QStringLiteral("params"), payload());
    const int frameSize = NVB::Channel::FrameCodec::encode(request).size();
    delete probe;

    // The machine is shared, so the two measurements alternate and each keeps
    // its best round: a slow round says more about the neighbours than about
    // the code.
    int failures = 0;
    double raw = 0;
    double v1 = 0;
    for (int round = 0; round < Rounds; ++round) {
        raw = qMax(raw, rawEchoRate(echoPath, frameSize));
        int roundFailures = 0;
        v1 = qMax(v1, commandRate(roundFailures));
        failures += roundFailures;
    }
    bool complete = false;
    const double notifications = notificationRate(complete);

    std::printf("frame size                      %d bytes\n", frameSize);
    std::printf(
        "raw QLocalSocket echo           %10.0f round trips/s (best of %d rounds of %d)\n", raw, Rounds, RoundTrips);
    std::printf("V1 command round trip           %10.0f round trips/s (best of %d rounds of %d, %d failed)\n", v1,
        Rounds, RoundTrips, failures);
    std::printf("ratio V1 / raw                  %10.2f (target >= 0.50)\n", raw > 0 ? v1 / raw : 0.0);
    std::printf("V1 notifications, %d listeners %10.0f notifications/s (%s)\n", Listeners, notifications,
        complete ? "all delivered" : "INCOMPLETE");
    return failures == 0 && complete ? 0 : 1;
}
