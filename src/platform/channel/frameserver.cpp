#include "frameserver.h"

#include <QDir>
#include <QFileInfo>

#include "core/nvldebug.h"
#include "framesocket.h"

namespace NVB::Channel {

FrameServer::FrameServer(QObject* parent)
    : QObject(parent)
{
    connect(&m_server, &QLocalServer::newConnection, this, &FrameServer::onNewConnection);
}

FrameServer::~FrameServer()
{
    close();
}

bool FrameServer::listen(const QString& path)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QLocalServer::removeServer(path);
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    if (!m_server.listen(path)) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning()
            << QStringLiteral("Cannot listen on %1: %2").arg(path, m_server.errorString());
        return false;
    }
    return true;
}

void FrameServer::close()
{
    if (m_server.isListening())
        m_server.close();
}

bool FrameServer::isListening() const
{
    return m_server.isListening();
}

QString FrameServer::path() const
{
    return m_server.fullServerName();
}

QString FrameServer::errorString() const
{
    return m_server.errorString();
}

void FrameServer::onNewConnection()
{
    while (QLocalSocket* socket = m_server.nextPendingConnection()) {
        auto* frameSocket = new FrameSocket(socket, this);
        emit newConnection(frameSocket);
    }
}

} // namespace NVB::Channel
