#include "plans/plancommand.h"

#include <cstdlib>

#include <QJsonDocument>
#include <QPointer>

#include "service/channelerrors.h"
#include "service/commands/header.h"
#include "service/icommand.h"
#include "service/manager.h"

namespace NVB::GUI {

using namespace NVB::Common::Communication;

ICommand* PlanCommand::create(const QString& name)
{
    QPointer<Manager> manager = Manager::instance();
    if (manager.isNull())
        throw QString::fromLatin1(Errors::ManagerMissing);
    ICommand* command = manager->commandFactory(name);
    if (!command)
        throw QString::fromLatin1(Errors::CommandNotRegistered);
    return command;
}

void PlanCommand::setParams(ICommand* command, const QJsonObject& params)
{
    QJsonObject request = command->request().object();
    request.insert(QLatin1String(Commands::Format::Header::Params), params);
    command->setRequest(QJsonDocument(request));
}

void PlanCommand::exec(ICommand* command, const QJsonObject& params)
{
    setParams(command, params);
    command->exec();
}

QString PlanCommand::profile()
{
    return QString::fromLocal8Bit(std::getenv("USER"));
}

} // namespace NVB::GUI
