#pragma once

#include <QUuid>

#include "service/v2/commands/repository/getbunchrequest.h"
#include "service/v2/commands/repository/getbunchresponse.h"

namespace NVB::Common::Communication::V2::Repository::GetBunch {

inline constexpr QUuid CommandId {0x109dc706, 0xa63d, 0x493b, 0x9e, 0xea, 0xb9, 0xac, 0x56, 0x98, 0x02,
    0x1e}; // {109DC706-A63D-493B-9EEA-B9AC5698021E}

} // namespace NVB::Common::Communication::V2::Repository::GetBunch
