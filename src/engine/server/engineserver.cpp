#include "engineserver.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "channel/framesocket.h"
#include "core/nvldebug.h"
#include "peercredentials.h"
#include "service/commands/header.h"
#include "service/v2/wire.h"

namespace NVB::Engine {

namespace {

NVL::NvlDebugStream warning()
{
    return NVL::NvlDebug(QStringLiteral("NVB")).warning();
}

// The socket's folder must be ours and closed to everybody else; a folder
// made by somebody else in a shared place (/tmp) is refused, not reused.
bool securePrivateFolder(const QString& folder, QString* error)
{
    const QByteArray path = QFile::encodeName(folder);
    if (!QDir().mkpath(folder)) {
        *error = QStringLiteral("Cannot create the folder %1").arg(folder);
        return false;
    }
    struct stat info{};
    if (::lstat(path.constData(), &info) != 0 || !S_ISDIR(info.st_mode)) {
        *error = QStringLiteral("%1 is not a folder").arg(folder);
        return false;
    }
    if (info.st_uid != ::geteuid()) {
        *error = QStringLiteral("The folder %1 belongs to another user").arg(folder);
        return false;
    }
    if ((info.st_mode & 0777) != 0700 && ::chmod(path.constData(), 0700) != 0) {
        *error = QStringLiteral("Cannot make the folder %1 private").arg(folder);
        return false;
    }
    return true;
}

// Whether something accepts connections on the socket file: a live engine,
// whose socket must not be taken, as opposed to a file left by a dead one.
bool somebodyListens(const QString& socketPath)
{
    const QByteArray path = QFile::encodeName(socketPath);
    struct sockaddr_un address{};
    if (path.size() >= int(sizeof address.sun_path))
        return false;
    address.sun_family = AF_UNIX;
    memcpy(address.sun_path, path.constData(), size_t(path.size()));
    const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0)
        return false;
    const bool connected = ::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    ::close(fd);
    return connected;
}

} // namespace

EngineServer::EngineServer(Handler handler, QObject* parent)
    : QObject(parent)
    , m_handler(std::move(handler))
{
    connect(&m_server, &NVB::Channel::FrameServer::newConnection, this, &EngineServer::onNewConnection);
}

bool EngineServer::listen(const QString& socketPath, QString* error)
{
    if (!securePrivateFolder(QFileInfo(socketPath).absolutePath(), error))
        return false;
    if (somebodyListens(socketPath)) {
        *error = QStringLiteral("Another engine is already serving %1; stop it first or give this one another "
                                "socket with --socket")
                     .arg(socketPath);
        return false;
    }
    if (!m_server.listen(socketPath)) {
        *error = QStringLiteral("Cannot listen on %1: %2").arg(socketPath, m_server.errorString());
        return false;
    }
    return true;
}

void EngineServer::close()
{
    for (const auto& client : std::as_const(m_clients)) {
        if (client)
            client->close();
    }
    m_server.close();
}

int EngineServer::clientCount() const
{
    int count = 0;
    for (const auto& client : m_clients)
        count += client && client->isConnected() ? 1 : 0;
    return count;
}

void EngineServer::broadcast(const QJsonObject& frame)
{
    for (const auto& client : std::as_const(m_clients)) {
        if (client && client->isConnected())
            send(client, frame);
    }
}

void EngineServer::send(NVB::Channel::FrameSocket* socket, const QJsonObject& frame)
{
    if (!socket->isConnected())
        return;
    socket->send(frame);
    const qint64 waiting = socket->socket()->bytesToWrite();
    if (waiting > m_writeQueueLimit) {
        warning() << QStringLiteral("A console that stopped reading was disconnected: %1 bytes waited for it "
                                    "(the limit is %2)")
                         .arg(waiting)
                         .arg(m_writeQueueLimit);
        socket->socket()->abort();
    }
}

void EngineServer::onNewConnection(NVB::Channel::FrameSocket* socket)
{
    const auto uid = PeerCredentials::peerUid(int(socket->socket()->socketDescriptor()));
    if (!uid || *uid != ::geteuid()) {
        warning() << QStringLiteral("A connection from user %1 was refused").arg(uid ? qint64(*uid) : -1);
        socket->socket()->abort();
        socket->deleteLater();
        return;
    }
    m_clients.removeAll(nullptr);
    m_clients.append(socket);
    connect(socket, &NVB::Channel::FrameSocket::frameReceived, this, &EngineServer::onFrame);
    connect(socket, &NVB::Channel::FrameSocket::disconnected, socket, &QObject::deleteLater);
    emit clientConnected();
}

void EngineServer::onFrame(const QJsonObject& frame)
{
    auto* socket = qobject_cast<NVB::Channel::FrameSocket*>(sender());
    if (!socket)
        return;
    // The answer may come after the console or the server is gone.
    m_handler(frame, [self = QPointer<EngineServer>(this), client = QPointer<NVB::Channel::FrameSocket>(socket)](
                         const QJsonObject& reply) {
        if (self && client && !reply.isEmpty())
            self->send(client, reply);
    });
}

} // namespace NVB::Engine
