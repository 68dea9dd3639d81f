#include "synccommand.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QJsonDocument>
#include <QSignalSpy>

#include "service/commands/header.h"
#include "service/icommand.h"
#include "service/manager.h"

namespace NvbTest {

namespace Header = NVB::Common::Communication::Commands::Format::Header;

SyncCommand::Result SyncCommand::run(const QString& name, const QJsonObject& params, int timeoutMs)
{
    Result result;
    const auto manager = NVB::Common::Communication::Manager::instance();
    if (!manager)
        return result;
    NVB::Common::Communication::ICommand* command = manager->commandFactory(name);
    if (!command)
        return result;
    QSignalSpy done(command, &NVB::Common::Communication::ICommand::complite);
    QSignalSpy failed(command, &NVB::Common::Communication::ICommand::error);
    QSignalSpy late(command, &NVB::Common::Communication::ICommand::timeout);
    QJsonObject request = command->request().object();
    request.insert(QLatin1String(Header::Params), params);
    command->setRequest(QJsonDocument(request));
    command->exec();
    QDeadlineTimer deadline(timeoutMs);
    while (done.isEmpty() && failed.isEmpty() && late.isEmpty() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    result.answered = !done.isEmpty();
    if (result.answered) {
        result.isError = command->isReplyError();
        result.errorString = command->replyErrorString();
        result.data = command->reply().object().value(QLatin1String(Header::Data)).toObject();
    }
    command->deleteLater();
    return result;
}

} // namespace NvbTest
