#include "command.h"

#include <QTimerEvent>

#include "core/nvldebug.h"
#include "service/servicelink.h"
#include "service/v2/commandcatalogue.h"

namespace NVB::Common::Communication::V2 {

Command::Command(const QUuid& commandId, const QUuid& id, QObject* parent)
    : QObject(parent)
    , m_commandId(commandId)
    , m_id(id)
{ }

Command::~Command()
{
    if (m_sent && !m_finished)
        ServiceLink::forget(this);
}

void Command::setRequest(QSharedPointer<Request> request)
{
    m_request = std::move(request);
}

void Command::exec()
{
    if (m_sent) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning()
            << QStringLiteral("Command %1 executed twice; the second call is ignored").arg(m_commandId.toString());
        return;
    }
    m_sent = true;
    ServiceLink::get()->send(this);
}

QSharedPointer<Command::Response> Command::response() const
{
    return m_response;
}

void Command::timerEvent(QTimerEvent* event)
{
    if (event->timerId() == m_timer.timerId())
        finishWithTimeout();
    else
        QObject::timerEvent(event);
}

void Command::startTimeout(int ms)
{
    m_timer.start(ms, this);
}

void Command::finishWithReply(int status, const QString& errorMessage, const QJsonObject& response)
{
    if (m_finished)
        return;
    m_timer.stop();
    ServiceLink::forget(this);
    m_finished = true;
    m_status = status;
    m_errorMessage = errorMessage;
    if (status == Success) {
        QSharedPointer<Response> typed = CommandCatalogue::instance().createResponse(m_commandId);
        if (typed && typed->fromJson(response))
            m_response = typed;
        else
            NVL::NvlDebug(QStringLiteral("NVB")).warning()
                << QStringLiteral("Unreadable response of command %1").arg(m_commandId.toString());
    }
    emit complite();
}

void Command::finishWithError()
{
    if (m_finished)
        return;
    m_timer.stop();
    ServiceLink::forget(this);
    m_finished = true;
    m_status = ChannelError;
    emit error();
}

void Command::finishWithTimeout()
{
    if (m_finished)
        return;
    m_timer.stop();
    ServiceLink::forget(this);
    m_finished = true;
    m_status = ChannelError;
    NVL::NvlDebug(QStringLiteral("NVB")).warning()
        << QStringLiteral("Command %1 %2 timed out").arg(m_commandId.toString(), m_id.toString());
    emit timeout();
}

} // namespace NVB::Common::Communication::V2
