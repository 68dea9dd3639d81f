#include "commandrouter.h"

#include <algorithm>
#include <memory>
#include <utility>

#include <QEventLoop>

#include "core/nvldebug.h"
#include "disks/diskcommands.h"
#include "historycommands.h"
#include "plancommands.h"
#include "service/commands/header.h"
#include "service/envelope.h"
#include "service/v2/commandcatalogue.h"
#include "service/v2/wire.h"
#include "storagecommands.h"
#include "sync/syncmanager.h"
#include "systemcommands.h"
#include "v2commands.h"

namespace NVB::Engine {

namespace Header = NVB::Common::Communication::Commands::Format::Header;
namespace Wire = NVB::Common::Communication::V2::Wire;
using NVB::Common::Communication::Envelope;

namespace {

void drop(const QString& why)
{
    NVL::NvlDebug(QStringLiteral("NVB")).warning() << QStringLiteral("Request dropped: %1").arg(why);
}

} // namespace

CommandRouter::CommandRouter(Engine* engine)
{
    PlanCommands::add(engine, &m_v1);
    StorageCommands::add(engine, &m_v1);
    SyncManager::add(engine, &m_v1);
    HistoryCommands::add(engine, &m_v1);
    DiskCommands::add(engine, &m_v1);
    SystemCommands::add(engine, &m_v1, &m_v1Deferred);
    V2Commands::add(engine, &m_v2);
}

bool CommandRouter::handle(const QJsonObject& frame, const Replier& reply)
{
    const QString type = frame.value(QLatin1String(Header::Type::Key)).toString();
    if (type == QLatin1String(Header::Type::Request))
        return handleV1(frame, reply);
    if (type == QLatin1String(Wire::Type::Request)) {
        const QJsonObject answer = handleV2(frame);
        if (answer.isEmpty())
            return false;
        reply(answer);
        return true;
    }
    drop(QStringLiteral("a frame of type \"%1\" is no request").arg(type));
    return false;
}

QJsonObject CommandRouter::handle(const QJsonObject& frame)
{
    // Shared with the replier, which may outlive this call when the loop is
    // left some other way (the application quits).
    struct Wait
    {
        bool answered = false;
        QJsonObject reply;
        QEventLoop loop;
    };
    const auto wait = std::make_shared<Wait>();
    const bool answers = handle(frame, [wait](const QJsonObject& reply) {
        wait->answered = true;
        wait->reply = reply;
        wait->loop.quit();
    });
    if (answers && !wait->answered)
        wait->loop.exec();
    return wait->reply;
}

QStringList CommandRouter::v1Commands() const
{
    QStringList names = m_v1.keys() + m_v1Deferred.keys();
    names.sort();
    return names;
}

QList<QUuid> CommandRouter::v2Commands() const
{
    QList<QUuid> ids = m_v2.keys();
    std::sort(ids.begin(), ids.end());
    return ids;
}

bool CommandRouter::handleV1(const QJsonObject& frame, const Replier& reply)
{
    const QJsonValue id = frame.value(QLatin1String(Header::Id));
    const QJsonValue name = frame.value(QLatin1String(Header::Command));
    const QJsonValue params = frame.value(QLatin1String(Header::Params));
    if (!id.isString() || QUuid(id.toString()).isNull()) {
        drop(QStringLiteral("a command without a valid id"));
        return false;
    }
    if (!name.isString()) {
        reply(Envelope::errorReply(frame, QStringLiteral("The request names no command")));
        return true;
    }
    if (!params.isUndefined() && !params.isNull() && !params.isObject()) {
        reply(Envelope::errorReply(frame, QStringLiteral("The command's \"params\" is not an object")));
        return true;
    }
    const QString command = name.toString();
    const auto answer = [frame, command, reply](const Outcome& outcome) {
        if (!outcome.ok) {
            NVL::NvlDebug(QStringLiteral("NVB")).info() << QStringLiteral("%1 failed: %2").arg(command, outcome.error);
            reply(Envelope::errorReply(frame, outcome.error));
            return;
        }
        reply(Envelope::reply(frame, outcome.data));
    };
    const auto deferred = m_v1Deferred.constFind(command);
    if (deferred != m_v1Deferred.cend()) {
        (*deferred)(params.toObject(), answer);
        return true;
    }
    const auto handler = m_v1.constFind(command);
    if (handler == m_v1.cend()) {
        reply(Envelope::errorReply(frame, QStringLiteral("Unknown command %1").arg(command)));
        return true;
    }
    answer((*handler)(params.toObject()));
    return true;
}

QJsonObject CommandRouter::handleV2(const QJsonObject& frame)
{
    const QJsonValue id = frame.value(QLatin1String(Wire::Id));
    if (!id.isString() || QUuid(id.toString()).isNull()) {
        drop(QStringLiteral("a V2 command without a valid id"));
        return {};
    }
    const QUuid commandId(frame.value(QLatin1String(Wire::CommandId)).toString());
    const QJsonValue request = frame.value(QLatin1String(Wire::Request));
    const auto handler = m_v2.constFind(commandId);
    if (commandId.isNull() || handler == m_v2.cend()) {
        return Envelope::replyV2(frame, 3, {},
            QStringLiteral("Unknown command %1").arg(frame.value(QLatin1String(Wire::CommandId)).toString()));
    }
    // The typed request refuses values of the wrong type; check before the
    // handler reads it.
    const auto typed = NVB::Common::Communication::V2::CommandCatalogue::instance().createRequest(commandId);
    if (!request.isUndefined() && !request.isNull() && !request.isObject())
        return Envelope::replyV2(frame, 3, {}, QStringLiteral("The command's request is not an object"));
    if (typed && !typed->fromJson(request.toObject()))
        return Envelope::replyV2(frame, 3, {}, QStringLiteral("The command's request has a value of the wrong type"));
    const V2Answer answer = (*handler)(request.toObject());
    return Envelope::replyV2(frame, answer.status, answer.response, answer.error);
}

} // namespace NVB::Engine
