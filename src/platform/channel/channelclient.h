#pragma once

#include <QJsonObject>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QTimer>

namespace NVB::Channel {

class FrameSocket;

// The console's end of the channel: dials the engine's socket, keeps the
// connection and dials again after a loss, waiting longer after each failed
// attempt (from minimumDelay() doubling up to maximumDelay()); a successful
// connection resets the wait.
//
// Runs in the thread it lives in; all signals come from that thread's event
// loop.
class ChannelClient : public QObject
{
    Q_OBJECT
public:
    enum class State { Disconnected, Connecting, Connected };

    explicit ChannelClient(const QString& path, QObject* parent = nullptr);
    ~ChannelClient() override;

    QString path() const { return m_path; }
    State state() const { return m_state; }
    bool isConnected() const { return m_state == State::Connected; }

    // Starts dialling; does nothing when already connected or connecting.
    void start();
    // Drops the connection and stops dialling until start().
    void stop();
    // When disconnected, dials at once instead of waiting out the back-off;
    // someone is waiting for the engine right now.
    void dialNow();

    bool send(const QJsonObject& frame);
    bool sendRaw(const QByteArray& frameBytes);

    void setReconnectDelays(int minimumMs, int maximumMs);
    int minimumDelay() const { return m_minimumDelay; }
    int maximumDelay() const { return m_maximumDelay; }
    int currentDelay() const { return m_delay; }

signals:
    void connected();
    void disconnected();
    // A dial attempt failed; the next one is due after delayMs.
    void connectFailed(const QString& reason, int delayMs);
    void frameReceived(const QJsonObject& frame);

private slots:
    void dial();
    void onConnected();
    void onDisconnected();
    void onSocketError();

private:
    void scheduleRedial();
    void dropSocket();

    QString m_path;
    State m_state = State::Disconnected;
    QPointer<FrameSocket> m_socket;
    QTimer m_redial;
    bool m_running = false;
    int m_minimumDelay = 100;
    int m_maximumDelay = 5000;
    int m_delay = 100;
};

} // namespace NVB::Channel
