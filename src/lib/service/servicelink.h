#pragma once

#include <QHash>
#include <QJsonObject>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QUuid>

#include "channel/channelclient.h"

namespace NVB::Common::Communication {

class ICommand;
namespace V2 {
class Command;
}

// The console's side of the engine channel: owns the connection, stamps and
// sends commands, matches replies to the commands in flight and hands
// notifications to the NotificationCenter. Lives on the GUI thread.
//
// A command sent while there is no connection makes the link dial at once
// (not waiting out the back-off) and waits for that attempt. A command whose
// attempt fails, and every command in flight when the connection is lost,
// ends with error().
class ServiceLink : public QObject
{
    Q_OBJECT
public:
    static constexpr int DefaultCommandTimeout = 60000;
    static constexpr char TimeoutVariable[] = "NVB_COMMAND_TIMEOUT_MS";
    static constexpr char AgentType[] = "console";

    static QPointer<ServiceLink> instance();
    // The same object without the guarded pointer's bookkeeping, for the
    // per-command paths of the channel itself.
    static ServiceLink* get();

    QUuid sessionId() const { return m_sessionId; }
    bool isConnected() const;

    // Milliseconds a command waits for its reply: NVB_COMMAND_TIMEOUT_MS when
    // set to a positive number, else DefaultCommandTimeout.
    int commandTimeout() const { return m_commandTimeout; }
    void setCommandTimeout(int ms);

    NVB::Channel::ChannelClient* client() const { return m_client; }

    void send(ICommand* command);
    void send(V2::Command* command);

    // Drops a command from the tables; commands call it when they end or die.
    static void forget(ICommand* command);
    static void forget(V2::Command* command);

    int pendingCount() const;

signals:
    void connected();
    void disconnected();

private slots:
    void onConnected();
    void onDisconnected();
    void onConnectFailed();
    void onFrame(const QJsonObject& frame);

private:
    ServiceLink();
    void transmit(ICommand* command);
    void transmit(V2::Command* command);
    void failWaiting();
    void failInFlight();
    void onReply(const QJsonObject& frame);
    void onReplyV2(const QJsonObject& frame);
    void onNotification(const QJsonObject& frame);
    void onNotificationV2(const QJsonObject& frame);

    static ServiceLink* s_instance;

    QUuid m_sessionId;
    QString m_sessionIdText;
    NVB::Channel::ChannelClient* m_client = nullptr;
    int m_commandTimeout = DefaultCommandTimeout;
    QHash<QUuid, ICommand*> m_inFlight;
    QHash<QUuid, V2::Command*> m_inFlightV2;
    QList<QPointer<ICommand>> m_waiting;
    QList<QPointer<V2::Command>> m_waitingV2;
};

} // namespace NVB::Common::Communication
