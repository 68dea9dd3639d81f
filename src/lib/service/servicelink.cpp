#include "servicelink.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>

#include "channel/socketpath.h"
#include "core/nvldebug.h"
#include "service/commands/header.h"
#include "service/icommand.h"
#include "service/notification/format.h"
#include "service/notificationcenter.h"
#include "service/v2/command.h"
#include "service/v2/notificationmessage.h"
#include "service/v2/wire.h"

namespace NVB::Common::Communication {

namespace Header = Commands::Format::Header;
namespace NHeader = Notification::Format::Header;

ServiceLink* ServiceLink::s_instance = nullptr;

namespace {

// Keys as Latin-1 views: lookups then allocate nothing.
QLatin1String key(const char* text)
{
    return QLatin1String(text);
}

void warn(const QString& text)
{
    NVL::NvlDebug(QStringLiteral("NVB")).warning() << text;
}

// A frame's id: a QUuid in text form; null when absent or of another type.
QUuid frameId(const QJsonObject& frame, const char* name)
{
    const QJsonValue value = frame.value(key(name));
    return value.isString() ? QUuid(value.toString()) : QUuid();
}

} // namespace

QPointer<ServiceLink> ServiceLink::instance()
{
    return get();
}

ServiceLink* ServiceLink::get()
{
    if (!s_instance)
        s_instance = new ServiceLink;
    return s_instance;
}

ServiceLink::ServiceLink()
    : m_sessionId(QUuid::createUuid())
    , m_sessionIdText(m_sessionId.toString())
{
    bool ok = false;
    const int timeout = qEnvironmentVariableIntValue(TimeoutVariable, &ok);
    if (ok && timeout > 0)
        m_commandTimeout = timeout;

    m_client = new NVB::Channel::ChannelClient(NVB::Channel::SocketPath::engine(), this);
    connect(m_client, &NVB::Channel::ChannelClient::connected, this, &ServiceLink::onConnected);
    connect(m_client, &NVB::Channel::ChannelClient::disconnected, this, &ServiceLink::onDisconnected);
    connect(m_client, &NVB::Channel::ChannelClient::connectFailed, this, &ServiceLink::onConnectFailed);
    connect(m_client, &NVB::Channel::ChannelClient::frameReceived, this, &ServiceLink::onFrame);
    // Replies and notifications are delivered on the GUI thread, whoever
    // asked for the link first.
    QCoreApplication* application = QCoreApplication::instance();
    if (application && thread() != application->thread()) {
        moveToThread(application->thread());
        QMetaObject::invokeMethod(m_client, &NVB::Channel::ChannelClient::start, Qt::QueuedConnection);
    } else {
        m_client->start();
    }
}

bool ServiceLink::isConnected() const
{
    return m_client->isConnected();
}

void ServiceLink::setCommandTimeout(int ms)
{
    m_commandTimeout = qMax(1, ms);
}

int ServiceLink::pendingCount() const
{
    return m_inFlight.size() + m_inFlightV2.size() + m_waiting.size() + m_waitingV2.size();
}

void ServiceLink::send(ICommand* command)
{
    if (m_client->state() == NVB::Channel::ChannelClient::State::Disconnected)
        m_client->dialNow();
    switch (m_client->state()) {
    case NVB::Channel::ChannelClient::State::Connected:
        transmit(command);
        break;
    case NVB::Channel::ChannelClient::State::Connecting:
        m_waiting.append(command);
        break;
    case NVB::Channel::ChannelClient::State::Disconnected:
        warn(QStringLiteral("No connection to the engine; command %1 fails").arg(command->name()));
        // Ends from the event loop so that the caller's code after exec() runs first.
        QMetaObject::invokeMethod(command, &ICommand::finishWithError, Qt::QueuedConnection);
        break;
    }
}

void ServiceLink::send(V2::Command* command)
{
    if (m_client->state() == NVB::Channel::ChannelClient::State::Disconnected)
        m_client->dialNow();
    switch (m_client->state()) {
    case NVB::Channel::ChannelClient::State::Connected:
        transmit(command);
        break;
    case NVB::Channel::ChannelClient::State::Connecting:
        m_waitingV2.append(command);
        break;
    case NVB::Channel::ChannelClient::State::Disconnected:
        warn(QStringLiteral("No connection to the engine; command %1 fails").arg(command->commandId().toString()));
        QMetaObject::invokeMethod(command, &V2::Command::finishWithError, Qt::QueuedConnection);
        break;
    }
}

void ServiceLink::transmit(ICommand* command)
{
    // The header is ours: whatever a caller put there is overwritten. The
    // factory already wrote it, so usually nothing needs changing and the
    // object is sent as it is, without a copy.
    QJsonObject frame = command->request().object();
    const auto stamp = [&frame](const char* name, const QJsonValue& value) {
        const QLatin1String field = key(name);
        if (frame.value(field) != value)
            frame.insert(field, value);
    };
    stamp(Header::Command, command->name());
    stamp(Header::Id, command->id().toString());
    stamp(Header::SessionId, m_sessionIdText);
    stamp(Header::ConnectionType::key, Header::ConnectionType::User);
    stamp(Header::AgentType, QString::fromLatin1(AgentType));
    stamp(Header::Type::Key, QString::fromLatin1(Header::Type::Request));
    if (!frame.value(key(Header::Params)).isObject())
        frame.insert(key(Header::Params), QJsonObject());

    m_inFlight.insert(command->id(), command);
    command->startTimeout(m_commandTimeout);
    if (!m_client->send(frame)) {
        warn(QStringLiteral("Cannot send command %1").arg(command->name()));
        QMetaObject::invokeMethod(command, &ICommand::finishWithError, Qt::QueuedConnection);
    }
}

void ServiceLink::transmit(V2::Command* command)
{
    QJsonObject frame;
    frame.insert(key(V2::Wire::Type::Key), QString::fromLatin1(V2::Wire::Type::Request));
    frame.insert(key(V2::Wire::Id), command->id().toString());
    frame.insert(key(V2::Wire::CommandId), command->commandId().toString());
    frame.insert(key(V2::Wire::SessionId), m_sessionIdText);
    frame.insert(key(V2::Wire::Request), command->request() ? command->request()->toJson() : QJsonObject());

    m_inFlightV2.insert(command->id(), command);
    command->startTimeout(m_commandTimeout);
    if (!m_client->send(frame)) {
        warn(QStringLiteral("Cannot send command %1").arg(command->commandId().toString()));
        QMetaObject::invokeMethod(command, &V2::Command::finishWithError, Qt::QueuedConnection);
    }
}

void ServiceLink::forget(ICommand* command)
{
    if (!s_instance)
        return;
    s_instance->m_inFlight.remove(command->id());
    s_instance->m_waiting.removeAll(command);
}

void ServiceLink::forget(V2::Command* command)
{
    if (!s_instance)
        return;
    s_instance->m_inFlightV2.remove(command->id());
    s_instance->m_waitingV2.removeAll(command);
}

void ServiceLink::onConnected()
{
    const QList<QPointer<ICommand>> waiting = std::exchange(m_waiting, {});
    const QList<QPointer<V2::Command>> waitingV2 = std::exchange(m_waitingV2, {});
    for (const QPointer<ICommand>& command : waiting)
        if (command)
            transmit(command);
    for (const QPointer<V2::Command>& command : waitingV2)
        if (command)
            transmit(command);
    emit connected();
}

void ServiceLink::onDisconnected()
{
    failInFlight();
    failWaiting();
    emit disconnected();
}

void ServiceLink::onConnectFailed()
{
    failWaiting();
}

void ServiceLink::failWaiting()
{
    const QList<QPointer<ICommand>> waiting = std::exchange(m_waiting, {});
    const QList<QPointer<V2::Command>> waitingV2 = std::exchange(m_waitingV2, {});
    for (const QPointer<ICommand>& command : waiting)
        if (command)
            command->finishWithError();
    for (const QPointer<V2::Command>& command : waitingV2)
        if (command)
            command->finishWithError();
}

void ServiceLink::failInFlight()
{
    // Each finish removes the command from the table and its slot may delete
    // other commands, so work on guarded copies.
    QList<QPointer<ICommand>> commands;
    for (ICommand* command : qAsConst(m_inFlight))
        commands.append(command);
    QList<QPointer<V2::Command>> commandsV2;
    for (V2::Command* command : qAsConst(m_inFlightV2))
        commandsV2.append(command);
    m_inFlight.clear();
    m_inFlightV2.clear();
    for (const QPointer<ICommand>& command : commands)
        if (command)
            command->finishWithError();
    for (const QPointer<V2::Command>& command : commandsV2)
        if (command)
            command->finishWithError();
}

void ServiceLink::onFrame(const QJsonObject& frame)
{
    const QJsonValue type = frame.value(key(Header::Type::Key));
    if (!type.isString()) {
        warn(QStringLiteral("Channel frame without a type dropped"));
        return;
    }
    const QString text = type.toString();
    if (text == QLatin1String(Header::Type::Reply))
        onReply(frame);
    else if (text == QLatin1String(V2::Wire::Type::Reply))
        onReplyV2(frame);
    else if (text == QLatin1String(V2::Wire::Type::Notification))
        onNotificationV2(frame);
    else if (!QUuid(text).isNull())
        onNotification(frame);
    else
        warn(QStringLiteral("Channel frame of unknown type \"%1\" dropped").arg(text));
}

void ServiceLink::onReply(const QJsonObject& frame)
{
    const QUuid id = frameId(frame, Header::Id);
    if (id.isNull()) {
        warn(QStringLiteral("Command reply without a valid id dropped"));
        return;
    }
    ICommand* command = m_inFlight.value(id);
    if (!command) {
        NVL::NvlDebug(QStringLiteral("NVB")).debug()
            << QStringLiteral("Reply to a command no longer waiting: %1").arg(id.toString());
        return;
    }
    const QJsonValue status = frame.value(key(Header::Status::Key));
    const QJsonValue data = frame.value(key(Header::Data));
    const QJsonValue errorString = frame.value(key(Header::Status::ErrorString));
    const bool valid = status.isString() && (data.isUndefined() || data.isObject() || data.isNull())
        && (errorString.isUndefined() || errorString.isString());
    if (!valid) {
        warn(QStringLiteral("Malformed reply to command %1 dropped").arg(command->name()));
        command->finishWithError();
        return;
    }
    command->finishWithReply(frame);
}

void ServiceLink::onReplyV2(const QJsonObject& frame)
{
    const QUuid id = frameId(frame, V2::Wire::Id);
    if (id.isNull()) {
        warn(QStringLiteral("Command reply without a valid id dropped"));
        return;
    }
    V2::Command* command = m_inFlightV2.value(id);
    if (!command) {
        NVL::NvlDebug(QStringLiteral("NVB")).debug()
            << QStringLiteral("Reply to a command no longer waiting: %1").arg(id.toString());
        return;
    }
    const QJsonValue status = frame.value(key(V2::Wire::Status));
    const QJsonValue message = frame.value(key(V2::Wire::ErrorMessage));
    const QJsonValue response = frame.value(key(V2::Wire::Response));
    const bool valid = status.isDouble() && status.toDouble() == double(status.toInt())
        && (message.isUndefined() || message.isString())
        && (response.isUndefined() || response.isObject() || response.isNull());
    if (!valid) {
        warn(QStringLiteral("Malformed reply to command %1 dropped").arg(command->commandId().toString()));
        command->finishWithError();
        return;
    }
    command->finishWithReply(status.toInt(), message.toString(), response.toObject());
}

void ServiceLink::onNotification(const QJsonObject& frame)
{
    const QJsonValue message = frame.value(key(NHeader::Message));
    if (!(message.isUndefined() || message.isObject())) {
        warn(QStringLiteral("Notification with a malformed message dropped"));
        return;
    }
    if (QPointer<NotificationCenter> center = NotificationCenter::instance())
        center->deliver(QJsonDocument(frame));
}

void ServiceLink::onNotificationV2(const QJsonObject& frame)
{
    const QUuid typeId = frameId(frame, V2::Wire::TypeId);
    const QJsonValue payload = frame.value(key(V2::Wire::Payload));
    if (typeId.isNull() || !(payload.isObject() || payload.isUndefined())) {
        warn(QStringLiteral("Malformed V2 notification dropped"));
        return;
    }
    auto message = QSharedPointer<V2::NotificationMessage>::create(
        typeId, QJsonDocument(payload.toObject()).toJson(QJsonDocument::Compact));
    if (QPointer<NotificationCenter> center = NotificationCenter::instance())
        center->deliverV2(message);
}

} // namespace NVB::Common::Communication
