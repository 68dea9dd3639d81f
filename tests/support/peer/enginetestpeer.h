#pragma once

#include <functional>

#include <QByteArray>
#include <QHash>
#include <QJsonObject>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QTemporaryDir>
#include <QUuid>

#include "channel/frameserver.h"

namespace NVB::Channel {
class FrameSocket;
}
namespace NVB::Common::Communication::V2 {
class NotificationData;
}

namespace NvbTest {

// An engine double for tests: serves a temporary socket with the real frame
// codec, answers commands as scripted and pushes notifications, so that tests
// go through the console's real channel.
//
// Use: make the peer before anything touches the service singletons and call
// exportSocketPath(), so that the console dials this peer. Commands without a
// script get an error reply "No scripted reply for <name>".
class EngineTestPeer : public QObject
{
    Q_OBJECT
public:
    struct Answer
    {
        enum class Kind { Reply, ErrorReply, Silence, Raw, Close };
        Kind kind = Kind::Reply;
        QJsonObject data; // V1 data or V2 response
        QString errorText; // V1 error_string or V2 error_message
        int status = 2; // V2 status
        QByteArray rawFrame; // sent as it is (already framed)
        static Answer reply(const QJsonObject& data);
        static Answer error(const QString& text);
        static Answer v2(int status, const QJsonObject& response = {}, const QString& errorMessage = {});
        static Answer silence();
        static Answer raw(const QByteArray& frameBytes);
        static Answer close();
    };
    using Handler = std::function<Answer(const QJsonObject& request)>;

    explicit EngineTestPeer(QObject* parent = nullptr);
    ~EngineTestPeer() override;

    QString socketPath() const;
    // Points NVB_ENGINE_SOCKET at this peer.
    void exportSocketPath() const;

    bool listen();
    void stopListening();
    // Closes every client connection (the console then reconnects).
    void dropClients();
    int clientCount() const;
    bool waitForClient(int timeoutMs = 5000);

    // Scripts, by V1 command name or V2 command id; a later script replaces an
    // earlier one.
    void onCommand(const QString& name, Handler handler);
    void onCommand(const QString& name, const Answer& answer);
    void onCommandV2(const QUuid& commandId, Handler handler);
    void onCommandV2(const QUuid& commandId, const Answer& answer);

    // Every request frame received, V1 and V2, in order.
    QList<QJsonObject> requests() const { return m_requests; }
    QJsonObject lastRequest() const { return m_requests.value(m_requests.size() - 1); }
    // The newest V1 request of that name, empty if none came. Prefer it to
    // lastRequest() wherever the library may send something else meanwhile
    // (a summary refresh after a state change, say).
    QJsonObject lastRequest(const QString& command) const;
    // The parameters of that request.
    QJsonObject lastParams(const QString& command) const;
    int requestCount(const QString& command) const;
    bool waitForRequests(int count, int timeoutMs = 5000);

    // Pushes to every connected client.
    void notify(const QUuid& type, const QJsonObject& message = {});
    void notifyV2(const NVB::Common::Communication::V2::NotificationData& data);
    void notifyV2(const QUuid& typeId, const QJsonObject& payload);
    void sendFrame(const QJsonObject& frame);
    void sendRaw(const QByteArray& bytes);

signals:
    void requestReceived(const QJsonObject& request);

private slots:
    void onNewConnection(NVB::Channel::FrameSocket* socket);
    void onFrame(const QJsonObject& frame);

private:
    void answer(NVB::Channel::FrameSocket* socket, const QJsonObject& request, const Answer& answer, bool v2);

    QTemporaryDir m_dir;
    NVB::Channel::FrameServer m_server;
    QList<QPointer<NVB::Channel::FrameSocket>> m_clients;
    QHash<QString, Handler> m_handlers;
    QHash<QUuid, Handler> m_handlersV2;
    QList<QJsonObject> m_requests;
};

} // namespace NvbTest
