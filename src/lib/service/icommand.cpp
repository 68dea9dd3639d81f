#include "icommand.h"

#include <QJsonObject>
#include <QTimerEvent>

#include "core/nvldebug.h"
#include "service/commands/header.h"
#include "service/servicelink.h"

namespace NVB::Common::Communication {

namespace Header = Commands::Format::Header;

ICommand::ICommand(const QString& name, const QUuid& id, const QJsonDocument& request, QObject* parent)
    : QObject(parent)
    , m_name(name)
    , m_id(id)
    , m_request(request)
{ }

ICommand::~ICommand()
{
    if (m_sent && !isFinished())
        ServiceLink::forget(this);
}

void ICommand::setRequest(const QJsonDocument& request)
{
    m_request = request;
}

bool ICommand::isReplyError() const
{
    return m_reply.object().value(QLatin1String(Header::Status::Key)).toString()
        == QLatin1String(Header::Status::Value::Error);
}

QString ICommand::replyErrorString() const
{
    return m_reply.object().value(QLatin1String(Header::Status::ErrorString)).toString();
}

void ICommand::exec()
{
    if (m_sent) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning()
            << QStringLiteral("Command %1 executed twice; the second call is ignored").arg(m_name);
        return;
    }
    m_sent = true;
    ServiceLink::get()->send(this);
}

void ICommand::timerEvent(QTimerEvent* event)
{
    if (event->timerId() == m_timer.timerId())
        finishWithTimeout();
    else
        QObject::timerEvent(event);
}

void ICommand::startTimeout(int ms)
{
    m_timer.start(ms, this);
}

void ICommand::finishWithReply(const QJsonObject& reply)
{
    if (isFinished())
        return;
    m_timer.stop();
    ServiceLink::forget(this);
    m_reply = QJsonDocument(reply);
    m_complite = true;
    emit complite();
}

void ICommand::finishWithError()
{
    if (isFinished())
        return;
    m_timer.stop();
    ServiceLink::forget(this);
    m_error = true;
    emit error();
}

void ICommand::finishWithTimeout()
{
    if (isFinished())
        return;
    m_timer.stop();
    ServiceLink::forget(this);
    m_timeout = true;
    NVL::NvlDebug(QStringLiteral("NVB")).warning()
        << QStringLiteral("Command %1 %2 timed out").arg(m_name, m_id.toString());
    emit timeout();
}

} // namespace NVB::Common::Communication
