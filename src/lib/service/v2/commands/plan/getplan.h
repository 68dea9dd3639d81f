#pragma once

#include <QUuid>

#include "service/uuidliteral.h"
#include "service/v2/commands/plan/getplanrequest.h"
#include "service/v2/commands/plan/getplanresponse.h"

namespace NVB::Common::Communication::V2::Plan::GetPlan {

inline constexpr QUuid CommandId = uuidLiteral("{5858DE33-EC0E-4CF1-9C31-B53F76178606}");

} // namespace NVB::Common::Communication::V2::Plan::GetPlan
