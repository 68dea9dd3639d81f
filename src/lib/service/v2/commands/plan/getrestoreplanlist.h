#pragma once

#include <QUuid>

#include "service/v2/commands/plan/getplanlist.h"

// Same request and response as GetPlanList; only the command id differs.
namespace NVB::Common::Communication::V2::Plan::GetRestorePlanList {

inline constexpr QUuid CommandId {0xee378b33, 0xbeb1, 0x4044, 0xb8, 0xaf, 0x49, 0xa1, 0xe7, 0xea, 0x83,
    0x9c}; // {EE378B33-BEB1-4044-B8AF-49A1E7EA839C}
using Request = GetPlanList::Request;
using Response = GetPlanList::Response;

} // namespace NVB::Common::Communication::V2::Plan::GetRestorePlanList
