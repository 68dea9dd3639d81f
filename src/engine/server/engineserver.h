#pragma once

#include <functional>

#include <QJsonObject>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>

#include "channel/frameserver.h"

namespace NVB::Channel {
class FrameSocket;
}

namespace NVB::Engine {

// Serves the engine's socket. The socket lies in a folder only its owner may
// enter, and every connection is checked against the kernel's word about the
// peer: only the user the engine runs as may talk to it.
class EngineServer : public QObject
{
    Q_OBJECT

public:
    // Answers one request frame with its reply frame.
    using Handler = std::function<QJsonObject(const QJsonObject& request)>;

    explicit EngineServer(Handler handler, QObject* parent = nullptr);

    bool listen(const QString& socketPath, QString* error);
    void close();
    QString socketPath() const { return m_server.path(); }

    void broadcast(const QJsonObject& frame);
    int clientCount() const;

signals:
    void clientConnected();

private slots:
    void onNewConnection(NVB::Channel::FrameSocket* socket);
    void onFrame(const QJsonObject& frame);

private:
    Handler m_handler;
    NVB::Channel::FrameServer m_server;
    QList<QPointer<NVB::Channel::FrameSocket>> m_clients;
};

} // namespace NVB::Engine
