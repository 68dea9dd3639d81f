#pragma once

#include <QUuid>

#include "service/v2/commands/plan/getplanrequest.h"
#include "service/v2/commands/plan/getplanresponse.h"

namespace NVB::Common::Communication::V2::Plan::GetPlan {

inline constexpr QUuid CommandId {0x5858de33, 0xec0e, 0x4cf1, 0x9c, 0x31, 0xb5, 0x3f, 0x76, 0x17, 0x86,
    0x06}; // {5858DE33-EC0E-4CF1-9C31-B53F76178606}

} // namespace NVB::Common::Communication::V2::Plan::GetPlan
