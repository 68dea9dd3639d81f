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
//
// A console that stops reading is dropped once more than writeQueueLimit()
// bytes wait for it, so one stuck console cannot make the engine's memory
// grow without end.
class EngineServer : public QObject
{
    Q_OBJECT

public:
    using Reply = std::function<void(const QJsonObject& reply)>;
    // Answers one request frame by calling `reply` with its reply frame, at
    // once or later; not at all when there is nothing to answer.
    using Handler = std::function<void(const QJsonObject& request, const Reply& reply)>;

    static constexpr qint64 DefaultWriteQueueLimit = 32ll * 1024 * 1024;

    explicit EngineServer(Handler handler, QObject* parent = nullptr);

    // Refuses a socket on which another engine answers: its file is only
    // replaced when nobody listens on it any more.
    bool listen(const QString& socketPath, QString* error);
    void close();
    QString socketPath() const { return m_server.path(); }

    void broadcast(const QJsonObject& frame);
    int clientCount() const;

    qint64 writeQueueLimit() const { return m_writeQueueLimit; }
    void setWriteQueueLimit(qint64 bytes) { m_writeQueueLimit = bytes; }

signals:
    void clientConnected();

private slots:
    void onNewConnection(NVB::Channel::FrameSocket* socket);
    void onFrame(const QJsonObject& frame);

private:
    void send(NVB::Channel::FrameSocket* socket, const QJsonObject& frame);

    Handler m_handler;
    qint64 m_writeQueueLimit = DefaultWriteQueueLimit;
    NVB::Channel::FrameServer m_server;
    QList<QPointer<NVB::Channel::FrameSocket>> m_clients;
};

} // namespace NVB::Engine
