#pragma once

#include <QJsonObject>
#include <QLocalSocket>
#include <QObject>
#include <QPointer>

#include "framecodec.h"

namespace NVB::Channel {

// Frames over one connected local socket, for either end of the channel: the
// console's client wraps the socket it dialled, the engine and the test peer
// wrap the sockets their server accepted.
//
// Unreadable frames are logged and skipped; a stream that has lost its framing
// is logged, aborted and reported once by streamBroken() (followed by
// disconnected()).
class FrameSocket : public QObject
{
    Q_OBJECT
public:
    // Takes ownership of the socket.
    explicit FrameSocket(QLocalSocket* socket, QObject* parent = nullptr);
    ~FrameSocket() override;

    QLocalSocket* socket() const { return m_socket; }
    bool isConnected() const;

    // False when the socket is not connected; the frame is then lost.
    bool send(const QJsonObject& object);
    bool sendRaw(const QByteArray& frameBytes);

    void close();

    quint64 droppedFrames() const { return m_dropped; }

signals:
    void frameReceived(const QJsonObject& frame);
    void frameDropped(const QString& reason);
    void streamBroken(const QString& reason);
    void disconnected();

private slots:
    void onReadyRead();

private:
    QPointer<QLocalSocket> m_socket;
    FrameCodec m_codec;
    quint64 m_dropped = 0;
    bool m_broken = false;
};

} // namespace NVB::Channel
