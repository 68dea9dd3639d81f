#include "channelclient.h"

#include <QLocalSocket>

#include "core/nvldebug.h"
#include "framesocket.h"

namespace NVB::Channel {

ChannelClient::ChannelClient(const QString& path, QObject* parent)
    : QObject(parent)
    , m_path(path)
{
    m_redial.setSingleShot(true);
    connect(&m_redial, &QTimer::timeout, this, &ChannelClient::dial);
}

ChannelClient::~ChannelClient()
{
    m_running = false;
    if (m_socket) {
        m_socket->disconnect(this);
        m_socket->socket()->disconnect(this);
        delete m_socket;
    }
}

void ChannelClient::start()
{
    m_running = true;
    if (m_state == State::Disconnected && !m_redial.isActive())
        dial();
}

void ChannelClient::stop()
{
    m_running = false;
    m_redial.stop();
    const bool wasConnected = m_state == State::Connected;
    dropSocket();
    m_state = State::Disconnected;
    if (wasConnected)
        emit disconnected();
}

void ChannelClient::dialNow()
{
    m_running = true;
    if (m_state != State::Disconnected)
        return;
    m_redial.stop();
    dial();
}

bool ChannelClient::send(const QJsonObject& frame)
{
    return m_state == State::Connected && m_socket && m_socket->send(frame);
}

bool ChannelClient::sendRaw(const QByteArray& frameBytes)
{
    return m_state == State::Connected && m_socket && m_socket->sendRaw(frameBytes);
}

void ChannelClient::setReconnectDelays(int minimumMs, int maximumMs)
{
    m_minimumDelay = qMax(1, minimumMs);
    m_maximumDelay = qMax(m_minimumDelay, maximumMs);
    m_delay = m_minimumDelay;
}

void ChannelClient::dial()
{
    if (!m_running || m_state != State::Disconnected)
        return;
    dropSocket();
    m_state = State::Connecting;
    auto* socket = new QLocalSocket;
    m_socket = new FrameSocket(socket, this);
    connect(socket, &QLocalSocket::connected, this, &ChannelClient::onConnected);
    connect(socket, &QLocalSocket::errorOccurred, this, &ChannelClient::onSocketError);
    connect(m_socket, &FrameSocket::disconnected, this, &ChannelClient::onDisconnected);
    connect(m_socket, &FrameSocket::frameReceived, this, &ChannelClient::frameReceived);
    socket->connectToServer(m_path);
}

void ChannelClient::onConnected()
{
    if (m_state != State::Connecting)
        return;
    m_state = State::Connected;
    m_delay = m_minimumDelay;
    emit connected();
}

void ChannelClient::onDisconnected()
{
    if (m_state != State::Connected)
        return;
    m_state = State::Disconnected;
    NVL::NvlDebug(QStringLiteral("NVB")).warning() << QStringLiteral("Connection to the engine lost");
    emit disconnected();
    scheduleRedial();
}

void ChannelClient::onSocketError()
{
    auto* socket = qobject_cast<QLocalSocket*>(sender());
    if (!socket || !m_socket || socket != m_socket->socket())
        return;
    if (m_state == State::Connecting) {
        const QString reason = socket->errorString();
        m_state = State::Disconnected;
        scheduleRedial();
        emit connectFailed(reason, m_redial.interval());
    } else if (m_state == State::Connected && socket->state() == QLocalSocket::UnconnectedState) {
        onDisconnected();
    }
}

void ChannelClient::scheduleRedial()
{
    // The socket object is discarded from the event loop: we may be inside one
    // of its signals.
    if (m_socket) {
        m_socket->disconnect(this);
        m_socket->socket()->disconnect(this);
        m_socket->deleteLater();
        m_socket = nullptr;
    }
    if (!m_running)
        return;
    const int delay = m_delay;
    m_delay = qMin(m_maximumDelay, m_delay * 2);
    m_redial.start(delay);
}

void ChannelClient::dropSocket()
{
    if (!m_socket)
        return;
    m_socket->disconnect(this);
    m_socket->socket()->disconnect(this);
    m_socket->socket()->abort();
    m_socket->deleteLater();
    m_socket = nullptr;
}

} // namespace NVB::Channel
