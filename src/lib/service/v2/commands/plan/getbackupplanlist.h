#pragma once

#include <QUuid>

#include "service/v2/commands/plan/getplanlist.h"

// Same request and response as GetPlanList; only the command id differs.
namespace NVB::Common::Communication::V2::Plan::GetBackupPlanList {

inline constexpr QUuid CommandId {0x3d9d0f5b, 0xb6b4, 0x4e7f, 0xa4, 0xa2, 0x7f, 0x2a, 0xe1, 0x71, 0x82,
    0x09}; // {3D9D0F5B-B6B4-4E7F-A4A2-7F2AE1718209}
using Request = GetPlanList::Request;
using Response = GetPlanList::Response;

} // namespace NVB::Common::Communication::V2::Plan::GetBackupPlanList
