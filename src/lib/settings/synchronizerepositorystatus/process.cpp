#include "settings/synchronizerepositorystatus/process.h"

#include <QScopedPointer>

#include "core/nvldebug.h"
#include "plans/plancommand.h"
#include "service/commandresult.h"
#include "service/commands/storage.h"
#include "service/icommand.h"
#include "service/notification/format.h"
#include "service/notification/iparser.h"
#include "service/notification/parserfactory.h"
#include "service/notificationcenter.h"
#include "service/v2/notification/synchronizerepositoryerror.h"
#include "service/v2/notification/synchronizerepositoryfinished.h"
#include "service/v2/notification/synchronizerepositorystatus.h"
#include "service/v2/notificationmessage.h"

namespace NVB::GUI::SynchronizeRepositoryStatus {

using NVB::Common::Communication::CommandResult;
using NVB::Common::Communication::ICommand;
using NVB::Common::Communication::NotificationCenter;
namespace Storage = NVB::Common::Communication::Commands::Format::Storage;
namespace Notify = NVB::Common::Communication::Notification::Format;
namespace V2N = NVB::Common::Communication::V2::Notification;

Process::Process(const QUuid& connectionId, QObject* parent)
    : QObject(parent)
    , m_connectionId(connectionId)
{
    if (const auto center = NotificationCenter::instance()) {
        connect(center, &NotificationCenter::notification, this, &Process::onNotification);
        connect(center, &NotificationCenter::notificationV2, this, &Process::onNotificationV2, Qt::QueuedConnection);
    }
}

void Process::start()
{
    send(Storage::SynchronizeRepository::Name, &Process::onStartReply);
}

void Process::cancel()
{
    if (m_running)
        send(Storage::SynchronizeRepositoryCancel::Name, &Process::onCancelReply);
}

void Process::send(const char* name, void (Process::*reply)())
{
    try {
        ICommand* command = PlanCommand::create(QString::fromLatin1(name));
        connect(command, &ICommand::complite, this, reply);
        connect(command, &ICommand::error, this, reply);
        connect(command, &ICommand::timeout, this, reply);
        // Both commands name the account under the same key.
        PlanCommand::exec(
            command, {{QLatin1String(Storage::SynchronizeRepository::Request::Id), m_connectionId.toString()}});
    } catch (const QString& text) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << text;
        emit error(text);
    }
}

void Process::onStartReply()
{
    QScopedPointer<ICommand, QScopedPointerDeleteLater> command(qobject_cast<ICommand*>(sender()));
    try {
        CommandResult::data(command.data());
    } catch (const QString& text) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << text;
        emit error(text);
    }
}

void Process::onCancelReply()
{
    QScopedPointer<ICommand, QScopedPointerDeleteLater> command(qobject_cast<ICommand*>(sender()));
    try {
        CommandResult::data(command.data());
    } catch (const QString& text) {
        // Ended before the cancel arrived: the end's notification follows.
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << text;
    }
}

void Process::onNotification(const QJsonDocument& document)
{
    QScopedPointer<NVB::Common::Communication::Notification::IParser> parser(
        NVB::Common::Communication::Notification::ParserFactory::instance().create(document));
    if (!parser || parser->type() != Notify::Storage::SynchronizeRepositoryStarted::Type)
        return;
    if (QUuid(parser->message().value(QLatin1String(Notify::Storage::SynchronizeRepositoryStarted::Id)).toString())
        != m_connectionId)
        return;
    m_running = true;
    emit started();
}

void Process::onNotificationV2(QSharedPointer<NVB::Common::Communication::V2::NotificationMessage> message)
{
    if (!message)
        return;
    const QUuid type = message->type();
    if (type == V2N::SynchronizeRepositoryStatus::TypeId) {
        const auto data = message->data<V2N::SynchronizeRepositoryStatus>();
        if (data && data->connectionId() == m_connectionId)
            emit status(data->message());
    } else if (type == V2N::SynchronizeRepositoryError::TypeId) {
        const auto data = message->data<V2N::SynchronizeRepositoryError>();
        if (!data || data->connectionId() != m_connectionId)
            return;
        for (const QString& line : data->errorList())
            emit status(line);
        emit error(data->message());
    } else if (type == V2N::SynchronizeRepositoryFinished::TypeId) {
        const auto data = message->data<V2N::SynchronizeRepositoryFinished>();
        if (!data || data->connectionId() != m_connectionId)
            return;
        m_running = false;
        emit finished();
    }
}

} // namespace NVB::GUI::SynchronizeRepositoryStatus
