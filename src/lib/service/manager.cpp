#include "manager.h"

#include <QCoreApplication>
#include <QJsonObject>

#include "core/nvldebug.h"
#include "service/commands/catalogue.h"
#include "service/commands/header.h"
#include "service/icommand.h"
#include "service/servicelink.h"
#include "service/v2/command.h"
#include "service/v2/commandcatalogue.h"

namespace NVB::Common::Communication {

namespace Header = Commands::Format::Header;

Manager* Manager::s_instance = nullptr;

QPointer<Manager> Manager::instance()
{
    if (!s_instance)
        s_instance = new Manager;
    return s_instance;
}

Manager::Manager()
{
    if (QCoreApplication* application = QCoreApplication::instance())
        moveToThread(application->thread());
    ServiceLink::instance();
}

ICommand* Manager::commandFactory(const QString& name)
{
    if (!Commands::Catalogue::contains(name)) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << QStringLiteral("Unknown command \"%1\"").arg(name);
        return nullptr;
    }
    ServiceLink* link = ServiceLink::get();
    const QUuid id = QUuid::createUuid();
    QJsonObject request;
    request.insert(QLatin1String(Header::Command), name);
    request.insert(QLatin1String(Header::Id), id.toString());
    request.insert(QLatin1String(Header::SessionId), link->sessionId().toString());
    request.insert(QLatin1String(Header::ConnectionType::key), Header::ConnectionType::User);
    request.insert(QLatin1String(Header::AgentType), QLatin1String(ServiceLink::AgentType));
    request.insert(QLatin1String(Header::Type::Key), QLatin1String(Header::Type::Request));
    request.insert(QLatin1String(Header::Params), QJsonObject());
    return new ICommand(name, id, QJsonDocument(request));
}

V2::Command* Manager::commandFactoryV2(const QUuid& commandId)
{
    if (!V2::CommandCatalogue::instance().contains(commandId)) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning()
            << QStringLiteral("Unknown command %1").arg(commandId.toString());
        return nullptr;
    }
    return new V2::Command(commandId, QUuid::createUuid());
}

} // namespace NVB::Common::Communication
