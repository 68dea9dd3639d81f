#pragma once

#include <QLocalServer>
#include <QObject>
#include <QString>

namespace NVB::Channel {

class FrameSocket;

// The listening end of the channel: the engine serves its socket with it, the
// test peer a temporary one. Each accepted connection comes out as a
// FrameSocket parented to the server.
class FrameServer : public QObject
{
    Q_OBJECT
public:
    explicit FrameServer(QObject* parent = nullptr);
    ~FrameServer() override;

    // Removes a stale socket file left by a crashed server first, then
    // listens; the socket is made accessible to its owner only.
    bool listen(const QString& path);
    void close();
    bool isListening() const;
    QString path() const;
    QString errorString() const;

signals:
    void newConnection(NVB::Channel::FrameSocket* socket);

private slots:
    void onNewConnection();

private:
    QLocalServer m_server;
};

} // namespace NVB::Channel
