#include "enginetestpeer.h"

#include <algorithm>

#include <QCoreApplication>
#include <QDeadlineTimer>

#include "channel/framesocket.h"
#include "service/commands/header.h"
#include "service/envelope.h"
#include "service/v2/wire.h"

namespace NvbTest {

using NVB::Common::Communication::Envelope;
namespace Header = NVB::Common::Communication::Commands::Format::Header;
namespace Wire = NVB::Common::Communication::V2::Wire;

EngineTestPeer::Answer EngineTestPeer::Answer::reply(const QJsonObject& data)
{
    Answer a;
    a.data = data;
    return a;
}

EngineTestPeer::Answer EngineTestPeer::Answer::error(const QString& text)
{
    Answer a;
    a.kind = Kind::ErrorReply;
    a.errorText = text;
    a.status = 3;
    return a;
}

EngineTestPeer::Answer EngineTestPeer::Answer::v2(int status, const QJsonObject& response, const QString& errorMessage)
{
    Answer a;
    a.status = status;
    a.data = response;
    a.errorText = errorMessage;
    return a;
}

EngineTestPeer::Answer EngineTestPeer::Answer::silence()
{
    Answer a;
    a.kind = Kind::Silence;
    return a;
}

EngineTestPeer::Answer EngineTestPeer::Answer::raw(const QByteArray& frameBytes)
{
    Answer a;
    a.kind = Kind::Raw;
    a.rawFrame = frameBytes;
    return a;
}

EngineTestPeer::Answer EngineTestPeer::Answer::close()
{
    Answer a;
    a.kind = Kind::Close;
    return a;
}

EngineTestPeer::EngineTestPeer(QObject* parent)
    : QObject(parent)
{
    connect(&m_server, &NVB::Channel::FrameServer::newConnection, this, &EngineTestPeer::onNewConnection);
    listen();
}

EngineTestPeer::~EngineTestPeer()
{
    dropClients();
    m_server.close();
}

QString EngineTestPeer::socketPath() const
{
    return m_dir.path() + QStringLiteral("/engine.sock");
}

void EngineTestPeer::exportSocketPath() const
{
    qputenv("NVB_ENGINE_SOCKET", socketPath().toUtf8());
}

bool EngineTestPeer::listen()
{
    return m_server.isListening() || m_server.listen(socketPath());
}

void EngineTestPeer::stopListening()
{
    m_server.close();
}

void EngineTestPeer::dropClients()
{
    const auto clients = m_clients;
    m_clients.clear();
    for (const auto& client : clients)
        if (client) {
            client->socket()->abort();
            client->deleteLater();
        }
}

int EngineTestPeer::clientCount() const
{
    int count = 0;
    for (const auto& client : m_clients)
        if (client && client->isConnected())
            ++count;
    return count;
}

bool EngineTestPeer::waitForClient(int timeoutMs)
{
    QDeadlineTimer deadline(timeoutMs);
    while (clientCount() == 0 && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    return clientCount() > 0;
}

void EngineTestPeer::onCommand(const QString& name, Handler handler)
{
    m_handlers.insert(name, std::move(handler));
}

void EngineTestPeer::onCommand(const QString& name, const Answer& answer)
{
    onCommand(name, [answer](const QJsonObject&) { return answer; });
}

void EngineTestPeer::onCommandV2(const QUuid& commandId, Handler handler)
{
    m_handlersV2.insert(commandId, std::move(handler));
}

void EngineTestPeer::onCommandV2(const QUuid& commandId, const Answer& answer)
{
    onCommandV2(commandId, [answer](const QJsonObject&) { return answer; });
}

QJsonObject EngineTestPeer::lastRequest(const QString& command) const
{
    for (auto it = m_requests.crbegin(); it != m_requests.crend(); ++it) {
        if (it->value(QStringLiteral("command")).toString() == command)
            return *it;
    }
    return {};
}

QJsonObject EngineTestPeer::lastParams(const QString& command) const
{
    return lastRequest(command).value(QStringLiteral("params")).toObject();
}

int EngineTestPeer::requestCount(const QString& command) const
{
    return int(std::count_if(m_requests.cbegin(), m_requests.cend(), [&command](const QJsonObject& request) {
        return request.value(QStringLiteral("command")).toString() == command;
    }));
}

bool EngineTestPeer::waitForRequests(int count, int timeoutMs)
{
    QDeadlineTimer deadline(timeoutMs);
    while (m_requests.size() < count && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    return m_requests.size() >= count;
}

void EngineTestPeer::notify(const QUuid& type, const QJsonObject& message)
{
    sendFrame(Envelope::notification(type, message));
}

void EngineTestPeer::notifyV2(const NVB::Common::Communication::V2::NotificationData& data)
{
    sendFrame(Envelope::notificationV2(data));
}

void EngineTestPeer::notifyV2(const QUuid& typeId, const QJsonObject& payload)
{
    sendFrame(Envelope::notificationV2(typeId, payload));
}

void EngineTestPeer::sendFrame(const QJsonObject& frame)
{
    for (const auto& client : qAsConst(m_clients))
        if (client)
            client->send(frame);
}

void EngineTestPeer::sendRaw(const QByteArray& bytes)
{
    for (const auto& client : qAsConst(m_clients))
        if (client)
            client->sendRaw(bytes);
}

void EngineTestPeer::onNewConnection(NVB::Channel::FrameSocket* socket)
{
    m_clients.append(socket);
    connect(socket, &NVB::Channel::FrameSocket::frameReceived, this, &EngineTestPeer::onFrame);
    connect(socket, &NVB::Channel::FrameSocket::disconnected, socket, &QObject::deleteLater);
}

void EngineTestPeer::onFrame(const QJsonObject& frame)
{
    auto* socket = qobject_cast<NVB::Channel::FrameSocket*>(sender());
    if (!socket)
        return;
    m_requests.append(frame);
    emit requestReceived(frame);
    const QString type = frame.value(QLatin1String(Header::Type::Key)).toString();
    if (type == QLatin1String(Wire::Type::Request)) {
        const QUuid commandId(frame.value(QLatin1String(Wire::CommandId)).toString());
        const Handler handler = m_handlersV2.value(commandId);
        answer(socket, frame,
            handler ? handler(frame)
                    : Answer::v2(3, {}, QStringLiteral("No scripted reply for %1").arg(commandId.toString())),
            true);
    } else if (type == QLatin1String(Header::Type::Request)) {
        const QString name = frame.value(QLatin1String(Header::Command)).toString();
        const Handler handler = m_handlers.value(name);
        answer(socket, frame,
            handler ? handler(frame) : Answer::error(QStringLiteral("No scripted reply for %1").arg(name)), false);
    }
}

void EngineTestPeer::answer(
    NVB::Channel::FrameSocket* socket, const QJsonObject& request, const Answer& answer, bool v2)
{
    switch (answer.kind) {
    case Answer::Kind::Silence:
        return;
    case Answer::Kind::Raw:
        socket->sendRaw(answer.rawFrame);
        return;
    case Answer::Kind::Close:
        socket->socket()->abort();
        return;
    case Answer::Kind::ErrorReply:
        socket->send(v2 ? Envelope::replyV2(request, answer.status, {}, answer.errorText)
                        : Envelope::errorReply(request, answer.errorText));
        return;
    case Answer::Kind::Reply:
        socket->send(v2 ? Envelope::replyV2(request, answer.status, answer.data, answer.errorText)
                        : Envelope::reply(request, answer.data));
        return;
    }
}

} // namespace NvbTest
