#include "framesocket.h"

#include "core/nvldebug.h"

namespace NVB::Channel {

FrameSocket::FrameSocket(QLocalSocket* socket, QObject* parent)
    : QObject(parent)
    , m_socket(socket)
{
    m_socket->setParent(this);
    connect(m_socket, &QLocalSocket::readyRead, this, &FrameSocket::onReadyRead);
    connect(m_socket, &QLocalSocket::disconnected, this, &FrameSocket::disconnected);
    // Bytes may already wait when the server hands over a fresh socket.
    if (m_socket->bytesAvailable() > 0)
        QMetaObject::invokeMethod(this, &FrameSocket::onReadyRead, Qt::QueuedConnection);
}

FrameSocket::~FrameSocket()
{
    if (m_socket)
        m_socket->disconnect(this);
}

bool FrameSocket::isConnected() const
{
    return m_socket && m_socket->state() == QLocalSocket::ConnectedState && !m_broken;
}

bool FrameSocket::send(const QJsonObject& object)
{
    return sendRaw(FrameCodec::encode(object));
}

bool FrameSocket::sendRaw(const QByteArray& frameBytes)
{
    if (!isConnected())
        return false;
    return m_socket->write(frameBytes) == frameBytes.size();
}

void FrameSocket::close()
{
    if (m_socket && m_socket->state() != QLocalSocket::UnconnectedState)
        m_socket->disconnectFromServer();
}

void FrameSocket::onReadyRead()
{
    if (!m_socket || m_broken)
        return;
    m_codec.append(m_socket->readAll());
    // A receiver may close or delete us from inside frameReceived().
    QPointer<FrameSocket> guard(this);
    while (guard && !m_broken) {
        FrameCodec::Result result = m_codec.next();
        switch (result.status) {
        case FrameCodec::Status::NeedMore:
            return;
        case FrameCodec::Status::Frame:
            emit frameReceived(result.object);
            break;
        case FrameCodec::Status::Dropped:
            ++m_dropped;
            NVL::NvlDebug(QStringLiteral("NVB")).warning() << result.error;
            emit frameDropped(result.error);
            break;
        case FrameCodec::Status::Broken:
            m_broken = true;
            NVL::NvlDebug(QStringLiteral("NVB")).warning() << result.error;
            emit streamBroken(result.error);
            if (guard && m_socket)
                m_socket->abort();
            return;
        }
    }
}

} // namespace NVB::Channel
