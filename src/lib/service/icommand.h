#pragma once

#include <QBasicTimer>
#include <QJsonDocument>
#include <QObject>
#include <QString>
#include <QUuid>

namespace NVB::Common::Communication {

class ServiceLink;

// One V1 command in flight. Made by Manager::commandFactory() with its header
// filled in; the caller adds its arguments under "params", connects the three
// ending signals and calls exec(). Exactly one of complite(), error() and
// timeout() ends the command, always from the event loop, never inside exec().
class ICommand : public QObject
{
    Q_OBJECT
public:
    ICommand(const QString& name, const QUuid& id, const QJsonDocument& request, QObject* parent = nullptr);
    ~ICommand() override;

    QUuid id() const { return m_id; }
    QString name() const { return m_name; }

    bool isComplite() const { return m_complite; }
    bool isError() const { return m_error; }
    bool isTimeout() const { return m_timeout; }
    bool isFinished() const { return m_complite || m_error || m_timeout; }

    QJsonDocument request() const { return m_request; }
    void setRequest(const QJsonDocument& request);

    QJsonDocument reply() const { return m_reply; }
    bool isReplyError() const;
    QString replyErrorString() const;

    void exec();

signals:
    void complite();
    void error();
    void timeout();

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    friend class ServiceLink;
    void startTimeout(int ms);
    void finishWithReply(const QJsonObject& reply);
    void finishWithError();
    void finishWithTimeout();

    QString m_name;
    QUuid m_id;
    QJsonDocument m_request;
    QJsonDocument m_reply;
    QBasicTimer m_timer;
    bool m_sent = false;
    bool m_complite = false;
    bool m_error = false;
    bool m_timeout = false;
};

} // namespace NVB::Common::Communication
