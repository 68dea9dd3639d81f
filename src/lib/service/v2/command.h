#pragma once

#include <QBasicTimer>
#include <QJsonObject>
#include <QObject>
#include <QSharedPointer>
#include <QString>
#include <QUuid>

namespace NVB::Common::Communication {
class ServiceLink;
}

namespace NVB::Common::Communication::V2 {

// One V2 command in flight, known by its command id. The typed request and
// response of each command derive from Command::Request and
// Command::Response; their JSON form is what travels, so both ends can read
// and write both of them.
class Command : public QObject
{
    Q_OBJECT
public:
    // The engine's outcome codes. ChannelError is ours: the command never got a
    // readable answer (lost connection, time-out, malformed reply).
    enum Status {
        NotFinished = 0,
        ChannelError = 1,
        Success = 2,
        Error = 3,
        LicenseError = 4,
        NeedRetry = 5,
    };

    class Request
    {
    public:
        virtual ~Request() = default;
        virtual QJsonObject toJson() const = 0;
        // False when a value has the wrong type; missing keys keep defaults.
        virtual bool fromJson(const QJsonObject& object) = 0;
    };

    class Response
    {
    public:
        virtual ~Response() = default;
        virtual QJsonObject toJson() const = 0;
        virtual bool fromJson(const QJsonObject& object) = 0;
    };

    Command(const QUuid& commandId, const QUuid& id, QObject* parent = nullptr);
    ~Command() override;

    QUuid commandId() const { return m_commandId; }
    QUuid id() const { return m_id; }

    void setRequest(QSharedPointer<Request> request);
    QSharedPointer<Request> request() const { return m_request; }

    void exec();

    int status() const { return m_status; }
    QString errorMessage() const { return m_errorMessage; }
    // Null until a success reply with a readable response arrived.
    virtual QSharedPointer<Response> response() const;

    bool isFinished() const { return m_finished; }

signals:
    void complite();
    void error();
    void timeout();

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    friend class NVB::Common::Communication::ServiceLink;
    void startTimeout(int ms);
    void finishWithReply(int status, const QString& errorMessage, const QJsonObject& response);
    void finishWithError();
    void finishWithTimeout();

    QUuid m_commandId;
    QUuid m_id;
    QSharedPointer<Request> m_request;
    QSharedPointer<Response> m_response;
    QString m_errorMessage;
    QBasicTimer m_timer;
    int m_status = NotFinished;
    bool m_sent = false;
    bool m_finished = false;
};

} // namespace NVB::Common::Communication::V2
