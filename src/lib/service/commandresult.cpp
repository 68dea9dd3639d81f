#include "commandresult.h"

#include "service/channelerrors.h"
#include "service/commands/header.h"
#include "service/icommand.h"

namespace NVB::Common::Communication {

QJsonObject CommandResult::data(const ICommand* command)
{
    if (!command || command->isError() || !command->isComplite() || command->reply().isNull()
        || !command->reply().isObject())
        throw QString::fromLatin1(Errors::ReplyFormat);
    if (command->isReplyError())
        throw command->replyErrorString();
    return command->reply().object().value(QLatin1String(Commands::Format::Header::Data)).toObject();
}

QJsonObject CommandResult::params(const ICommand* command)
{
    if (!command)
        return {};
    return command->request().object().value(QLatin1String(Commands::Format::Header::Params)).toObject();
}

} // namespace NVB::Common::Communication
