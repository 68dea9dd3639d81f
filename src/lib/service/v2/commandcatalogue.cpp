#include "commandcatalogue.h"

#include "service/v2/commands/getconnection.h"
#include "service/v2/commands/getconnectionbyid.h"
#include "service/v2/commands/plan/getbackupplanlist.h"
#include "service/v2/commands/plan/getplan.h"
#include "service/v2/commands/plan/getplanlist.h"
#include "service/v2/commands/plan/getrestoreplanlist.h"
#include "service/v2/commands/repository/getbunch.h"
#include "service/v2/commands/repository/getbunchlist.h"
#include "service/v2/commands/repository/getbunchrestorepointlist.h"
#include "service/v2/commands/repository/getcontent.h"
#include "service/v2/commands/repository/getgeneration.h"
#include "service/v2/commands/repository/getgenerationlist.h"
#include "service/v2/commands/repository/getrestorepoint.h"
#include "service/v2/commands/repository/getrestorepointlist.h"
#include "service/v2/commands/repository/removedatabunch.h"
#include "service/v2/commands/repository/removedatageneration.h"
#include "service/v2/commands/repository/startdeepsync.h"

namespace NVB::Common::Communication::V2 {

const CommandCatalogue& CommandCatalogue::instance()
{
    static const CommandCatalogue catalogue;
    return catalogue;
}

CommandCatalogue::CommandCatalogue()
{
    add<GetConnection::Request, GetConnection::Response>(GetConnection::CommandId, QStringLiteral("GetConnection"));
    add<GetConnectionById::Request, GetConnectionById::Response>(
        GetConnectionById::CommandId, QStringLiteral("GetConnectionById"));
    add<Plan::GetBackupPlanList::Request, Plan::GetBackupPlanList::Response>(
        Plan::GetBackupPlanList::CommandId, QStringLiteral("Plan::GetBackupPlanList"));
    add<Plan::GetPlan::Request, Plan::GetPlan::Response>(Plan::GetPlan::CommandId, QStringLiteral("Plan::GetPlan"));
    add<Plan::GetPlanList::Request, Plan::GetPlanList::Response>(
        Plan::GetPlanList::CommandId, QStringLiteral("Plan::GetPlanList"));
    add<Plan::GetRestorePlanList::Request, Plan::GetRestorePlanList::Response>(
        Plan::GetRestorePlanList::CommandId, QStringLiteral("Plan::GetRestorePlanList"));
    add<Repository::GetBunch::Request, Repository::GetBunch::Response>(
        Repository::GetBunch::CommandId, QStringLiteral("Repository::GetBunch"));
    add<Repository::GetBunchList::Request, Repository::GetBunchList::Response>(
        Repository::GetBunchList::CommandId, QStringLiteral("Repository::GetBunchList"));
    add<Repository::GetBunchRestorePointList::Request, Repository::GetBunchRestorePointList::Response>(
        Repository::GetBunchRestorePointList::CommandId, QStringLiteral("Repository::GetBunchRestorePointList"));
    add<Repository::GetContent::Request, Repository::GetContent::Response>(
        Repository::GetContent::CommandId, QStringLiteral("Repository::GetContent"));
    add<Repository::GetGeneration::Request, Repository::GetGeneration::Response>(
        Repository::GetGeneration::CommandId, QStringLiteral("Repository::GetGeneration"));
    add<Repository::GetGenerationList::Request, Repository::GetGenerationList::Response>(
        Repository::GetGenerationList::CommandId, QStringLiteral("Repository::GetGenerationList"));
    add<Repository::GetRestorePoint::Request, Repository::GetRestorePoint::Response>(
        Repository::GetRestorePoint::CommandId, QStringLiteral("Repository::GetRestorePoint"));
    add<Repository::GetRestorePointList::Request, Repository::GetRestorePointList::Response>(
        Repository::GetRestorePointList::CommandId, QStringLiteral("Repository::GetRestorePointList"));
    add<Repository::RemoveDataBunch::Request, Repository::RemoveDataBunch::Response>(
        Repository::RemoveDataBunch::CommandId, QStringLiteral("Repository::RemoveDataBunch"));
    add<Repository::RemoveDataGeneration::Request, Repository::RemoveDataGeneration::Response>(
        Repository::RemoveDataGeneration::CommandId, QStringLiteral("Repository::RemoveDataGeneration"));
    add<Repository::StartDeepSync::Request, Repository::StartDeepSync::Response>(
        Repository::StartDeepSync::CommandId, QStringLiteral("Repository::StartDeepSync"));
}

QString CommandCatalogue::name(const QUuid& id) const
{
    return m_entries.value(id).name;
}

QSharedPointer<Command::Request> CommandCatalogue::createRequest(const QUuid& id) const
{
    const auto it = m_entries.constFind(id);
    return it == m_entries.constEnd() ? nullptr : it->makeRequest();
}

QSharedPointer<Command::Response> CommandCatalogue::createResponse(const QUuid& id) const
{
    const auto it = m_entries.constFind(id);
    return it == m_entries.constEnd() ? nullptr : it->makeResponse();
}

} // namespace NVB::Common::Communication::V2
