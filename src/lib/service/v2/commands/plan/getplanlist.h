#pragma once

#include <QUuid>

#include "service/v2/commands/plan/getplanlistrequest.h"
#include "service/v2/commands/plan/getplanlistresponse.h"

namespace NVB::Common::Communication::V2::Plan::GetPlanList {

inline constexpr QUuid CommandId {0x87848def, 0xbe2f, 0x4494, 0x8e, 0xc6, 0x93, 0x96, 0x87, 0xdf, 0x9f,
    0x97}; // {87848DEF-BE2F-4494-8EC6-939687DF9F97}

} // namespace NVB::Common::Communication::V2::Plan::GetPlanList
