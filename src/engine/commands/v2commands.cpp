#include "v2commands.h"

#include <QJsonArray>

#include "core/engine.h"
#include "records/repository/bunch.h"
#include "records/repository/generation.h"
#include "records/repository/restorepoint.h"
#include "records/storage/connection.h"
#include "service/commands/plan.h"
#include "service/v2/commands/getconnection.h"
#include "service/v2/commands/getconnectionbyid.h"
#include "service/v2/commands/plan/getbackupplanlist.h"
#include "service/v2/commands/plan/getplan.h"
#include "service/v2/commands/plan/getplanlist.h"
#include "service/v2/commands/plan/getrestoreplanlist.h"
#include "service/v2/commands/repository/getbunchlist.h"
#include "service/v2/commands/repository/getbunchrestorepointlist.h"
#include "service/v2/commands/repository/getgenerationlist.h"
#include "service/v2/commands/repository/removedatabunch.h"
#include "service/v2/commands/repository/removedatageneration.h"
#include "store/enginestore.h"

namespace NVB::Engine {

namespace V2 = NVB::Common::Communication::V2;
namespace Info = NVB::Common::Communication::Commands::Format::Plan::DataType::Info;

namespace {

QJsonObject connectionJson(const StoredAccount& account)
{
    NVB::Info::Storage::Connection connection;
    connection.setId(account.id);
    connection.setDisplayName(account.displayName);
    connection.setType(account.type);
    connection.setSyncInProgress(false);
    return connection.toJson();
}

QJsonObject bunchJson(const StoredBunch& stored)
{
    NVB::Info::Repository::Bunch bunch;
    bunch.setId(stored.id);
    bunch.setConnectionId(stored.connectionId);
    bunch.setDisplayName(stored.displayName);
    bunch.setType(static_cast<NVL::Archive::Type>(stored.type));
    return bunch.toJson();
}

QJsonObject generationJson(const StoredGeneration& stored)
{
    NVB::Info::Repository::Generation generation;
    generation.setId(stored.id);
    generation.setBunchId(stored.bunchId);
    generation.setConnectionId(stored.connectionId);
    generation.setFirstRestorePoint(stored.firstRestorePoint);
    generation.setLastRestorePoint(stored.lastRestorePoint);
    generation.setStatus(static_cast<NVB::Info::Repository::Generation::Status>(stored.status));
    generation.setBrokenType(static_cast<NVL::Archive::BrokenType>(stored.brokenType));
    generation.setDeepSync(static_cast<NVL::Archive::DeepSyncType>(stored.deepSync));
    generation.setIsEncrypted(stored.encrypted);
    generation.setHint(stored.hint);
    generation.setStorageSize(static_cast<quint64>(qMax<qint64>(0, stored.storageSize)));
    return generation.toJson();
}

QJsonObject restorePointJson(const StoredRestorePoint& stored)
{
    using NVB::Info::Repository::RestorePoint;
    RestorePoint point;
    point.setConnectionId(stored.connectionId);
    point.setBunchId(stored.bunchId);
    point.setGenerationId(stored.generationId);
    point.setSequenceNumber(stored.sequenceNumber);
    point.setStartDate(stored.startUtc);
    point.setBackupType(static_cast<NVL::Archive::BackupType>(stored.backupType));
    point.setType(static_cast<RestorePoint::Type>(stored.type));
    point.setStatus(static_cast<RestorePoint::Status>(stored.status));
    point.setDeepSync(static_cast<NVL::Archive::DeepSyncType>(stored.deepSync));
    point.setIsEncrypted(stored.encrypted);
    point.setSizeOnStorage(stored.sizeOnStorage);
    return point.toJson();
}

// Plans of one job kind (0: all) as V2 list entries.
QJsonArray planObjects(Engine* engine, int subtype)
{
    QJsonArray list;
    for (const QJsonValue& value : engine->planList()) {
        const QJsonObject summary = value.toObject();
        if (subtype != 0 && summary.value(QLatin1String(Info::SubType)).toInt() != subtype)
            continue;
        const QUuid id(summary.value(QLatin1String(Info::ID)).toString());
        list.append(V2Commands::planObject(summary, engine->planXml(id).value_or(QString())));
    }
    return list;
}

} // namespace

QJsonObject V2Commands::planObject(const QJsonObject& summary, const QString& xml)
{
    return QJsonObject{
        {QStringLiteral("id"), summary.value(QLatin1String(Info::ID))},
        {QStringLiteral("name"), summary.value(QLatin1String(Info::Name))},
        {QStringLiteral("subType"), summary.value(QLatin1String(Info::SubType))},
        {QStringLiteral("type"), summary.value(QLatin1String(Info::Type))},
        {QStringLiteral("status"), summary.value(QLatin1String(Info::Status))},
        {QStringLiteral("lastRunStatus"), summary.value(QLatin1String(Info::LastRunStatus))},
        {QStringLiteral("xml"), xml},
    };
}

void V2Commands::add(Engine* engine, V2Handlers* handlers)
{
    handlers->insert(V2::GetConnection::CommandId, [engine](const QJsonObject&) {
        V2::GetConnection::Response response;
        QJsonArray connections;
        for (const StoredAccount& account : engine->store()->accounts())
            connections.append(connectionJson(account));
        response.setConnections(connections);
        return V2Answer::success(response.toJson());
    });
    handlers->insert(V2::GetConnectionById::CommandId, [engine](const QJsonObject& json) {
        V2::GetConnectionById::Request request;
        request.fromJson(json);
        const auto account = engine->store()->account(request.connectionId());
        if (!account) {
            return V2Answer::failure(
                QStringLiteral("There is no storage account with the id %1").arg(request.connectionId().toString()));
        }
        V2::GetConnectionById::Response response;
        response.setConnectionInfo(connectionJson(*account));
        return V2Answer::success(response.toJson());
    });
    const auto planList = [engine](int subtype) {
        return [engine, subtype](const QJsonObject&) {
            V2::Plan::GetPlanList::Response response;
            response.setPlanList(planObjects(engine, subtype));
            return V2Answer::success(response.toJson());
        };
    };
    handlers->insert(V2::Plan::GetPlanList::CommandId, planList(0));
    handlers->insert(V2::Plan::GetBackupPlanList::CommandId, planList(1));
    handlers->insert(V2::Plan::GetRestorePlanList::CommandId, planList(2));
    handlers->insert(V2::Repository::GetBunchList::CommandId, [engine](const QJsonObject& json) {
        V2::Repository::GetBunchList::Request request;
        if (!request.fromJson(json) || !engine->store()->account(request.connectionId()))
            return V2Answer::failure(QStringLiteral("There is no storage account with that id"));
        QJsonArray list;
        for (const StoredBunch& bunch : engine->store()->bunches(request.connectionId()))
            list.append(bunchJson(bunch));
        V2::Repository::GetBunchList::Response response;
        response.setBunchList(list);
        return V2Answer::success(response.toJson());
    });
    handlers->insert(V2::Repository::GetGenerationList::CommandId, [engine](const QJsonObject& json) {
        V2::Repository::GetGenerationList::Request request;
        if (!request.fromJson(json) || !engine->store()->bunch(request.connectionId(), request.bunchId()))
            return V2Answer::failure(QStringLiteral("There is no backup with that id on that storage"));
        QJsonArray list;
        for (const StoredGeneration& generation :
            engine->store()->generations(request.connectionId(), request.bunchId()))
            list.append(generationJson(generation));
        V2::Repository::GetGenerationList::Response response;
        response.setGenerationList(list);
        return V2Answer::success(response.toJson());
    });
    handlers->insert(V2::Repository::GetBunchRestorePointList::CommandId, [engine](const QJsonObject& json) {
        V2::Repository::GetBunchRestorePointList::Request request;
        if (!request.fromJson(json) || !engine->store()->bunch(request.connectionId(), request.bunchId()))
            return V2Answer::failure(QStringLiteral("There is no backup with that id on that storage"));
        QJsonArray list;
        for (const StoredRestorePoint& point : engine->store()->restorePoints(request.connectionId(), request.bunchId()))
            list.append(restorePointJson(point));
        V2::Repository::GetBunchRestorePointList::Response response;
        response.setRestorePointList(list);
        return V2Answer::success(response.toJson());
    });
    handlers->insert(V2::Repository::RemoveDataBunch::CommandId, [engine](const QJsonObject& json) {
        V2::Repository::RemoveDataBunch::Request request;
        if (!request.fromJson(json) || request.bunchId().isNull())
            return V2Answer::failure(QStringLiteral("The request does not name a backup"));
        const Outcome outcome = engine->removeBunch(request.connectionId(), request.bunchId());
        if (!outcome.ok)
            return V2Answer::failure(outcome.error);
        return V2Answer::success(V2::Repository::RemoveDataBunch::Response().toJson());
    });
    handlers->insert(V2::Repository::RemoveDataGeneration::CommandId, [engine](const QJsonObject& json) {
        V2::Repository::RemoveDataGeneration::Request request;
        if (!request.fromJson(json) || request.generationId().isNull())
            return V2Answer::failure(QStringLiteral("The request does not name a generation"));
        const Outcome outcome
            = engine->removeGeneration(request.connectionId(), request.bunchId(), request.generationId());
        if (!outcome.ok)
            return V2Answer::failure(outcome.error);
        return V2Answer::success(V2::Repository::RemoveDataGeneration::Response().toJson());
    });
    handlers->insert(V2::Plan::GetPlan::CommandId, [engine](const QJsonObject& json) {
        V2::Plan::GetPlan::Request request;
        request.fromJson(json);
        const auto summary = engine->planInfo(request.planId());
        if (!summary)
            return V2Answer::failure(QStringLiteral("There is no plan with the id %1").arg(request.planId().toString()));
        V2::Plan::GetPlan::Response response;
        response.setPlan(planObject(*summary, engine->planXml(request.planId()).value_or(QString())));
        return V2Answer::success(response.toJson());
    });
}

} // namespace NVB::Engine
