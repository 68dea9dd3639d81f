#pragma once

#include <QUuid>

#include "service/uuidliteral.h"
#include "service/v2/commands/plan/getplanlist.h"

// Same request and response as GetPlanList; only the command id differs.
namespace NVB::Common::Communication::V2::Plan::GetRestorePlanList {

inline constexpr QUuid CommandId = uuidLiteral("{EE378B33-BEB1-4044-B8AF-49A1E7EA839C}");
using Request = GetPlanList::Request;
using Response = GetPlanList::Response;

} // namespace NVB::Common::Communication::V2::Plan::GetRestorePlanList
