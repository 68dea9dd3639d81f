#include "plancommands.h"

#include <QJsonArray>

#include "core/engine.h"
#include "paramreader.h"
#include "service/commands/plan.h"

namespace NVB::Engine {

namespace Plan = NVB::Common::Communication::Commands::Format::Plan;

namespace {

QString key(const char* text)
{
    return QString::fromLatin1(text);
}

} // namespace

void PlanCommands::add(Engine* engine, V1Handlers* handlers)
{
    handlers->insert(key(Plan::Update::Name), [engine](const QJsonObject& params) {
        ParamReader args(params);
        const QUuid id = args.uuid(Plan::Update::Request::ID, false);
        const QString xml = args.string(Plan::Update::Request::XML);
        const QString profile = args.string(Plan::Update::Request::Profile, false);
        return args.ok() ? engine->savePlan(id, xml, profile) : Outcome::failure(args.error());
    });
    handlers->insert(key(Plan::GetList::Name), [engine](const QJsonObject&) {
        return Outcome::success({{key(Plan::GetList::Reply::Key), engine->planList()}});
    });
    handlers->insert(key(Plan::GetInfo::Name), [engine](const QJsonObject& params) {
        ParamReader args(params);
        const QUuid id = args.uuid(Plan::GetInfo::Request::Id);
        if (!args.ok())
            return Outcome::failure(args.error());
        const auto info = engine->planInfo(id);
        if (!info)
            return Outcome::failure(QStringLiteral("There is no plan with the id %1").arg(id.toString()));
        return Outcome::success({{key(Plan::GetInfo::Reply::Key), *info}});
    });
    handlers->insert(key(Plan::GetXML::Name), [engine](const QJsonObject& params) {
        ParamReader args(params);
        const QUuid id = args.uuid(Plan::GetXML::Request::ID);
        if (!args.ok())
            return Outcome::failure(args.error());
        const auto xml = engine->planXml(id);
        if (!xml)
            return Outcome::failure(QStringLiteral("There is no plan with the id %1").arg(id.toString()));
        return Outcome::success({{key(Plan::GetXML::Reply::Key), *xml}});
    });
    handlers->insert(key(Plan::Remove::Name), [engine](const QJsonObject& params) {
        ParamReader args(params);
        const QUuid id = args.uuid(Plan::Remove::Request::ID);
        return args.ok() ? engine->removePlan(id) : Outcome::failure(args.error());
    });
    handlers->insert(key(Plan::ExecuteStart::Name), [engine](const QJsonObject& params) {
        ParamReader args(params);
        const QUuid id = args.uuid(Plan::ExecuteStart::Request::ID);
        const bool forceFull = args.boolean(Plan::ExecuteStart::Request::ForceFull);
        // "verify": re-read the plan's last restore point instead of backing
        // up; an engine extension of the command, documented with the engine.
        const bool verify = args.boolean("verify");
        return args.ok() ? engine->startPlan(id, forceFull, verify) : Outcome::failure(args.error());
    });
    handlers->insert(key(Plan::ExecuteStop::Name), [engine](const QJsonObject& params) {
        ParamReader args(params);
        const QUuid id = args.uuid(Plan::ExecuteStop::Request::ID);
        return args.ok() ? engine->stopPlan(id) : Outcome::failure(args.error());
    });
    handlers->insert(key(Plan::GetUsedShare::Name), [engine](const QJsonObject&) {
        return Outcome::success({{key(Plan::GetUsedShare::Reply::List), QJsonArray::fromStringList(engine->usedShares())}});
    });
}

} // namespace NVB::Engine
