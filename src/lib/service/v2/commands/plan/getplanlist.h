#pragma once

#include <QUuid>

#include "service/uuidliteral.h"
#include "service/v2/commands/plan/getplanlistrequest.h"
#include "service/v2/commands/plan/getplanlistresponse.h"

namespace NVB::Common::Communication::V2::Plan::GetPlanList {

inline constexpr QUuid CommandId = uuidLiteral("{87848DEF-BE2F-4494-8EC6-939687DF9F97}");

} // namespace NVB::Common::Communication::V2::Plan::GetPlanList
