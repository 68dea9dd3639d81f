#pragma once

#include <QUuid>

#include "service/uuidliteral.h"
#include "service/v2/commands/plan/getplanlist.h"

// Same request and response as GetPlanList; only the command id differs.
namespace NVB::Common::Communication::V2::Plan::GetBackupPlanList {

inline constexpr QUuid CommandId = uuidLiteral("{3D9D0F5B-B6B4-4E7F-A4A2-7F2AE1718209}");
using Request = GetPlanList::Request;
using Response = GetPlanList::Response;

} // namespace NVB::Common::Communication::V2::Plan::GetBackupPlanList
