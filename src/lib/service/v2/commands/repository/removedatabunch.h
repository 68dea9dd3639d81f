#pragma once

#include <QUuid>

#include "service/v2/commands/repository/removedatabunchrequest.h"
#include "service/v2/commands/repository/removedatabunchresponse.h"

namespace NVB::Common::Communication::V2::Repository::RemoveDataBunch {

inline constexpr QUuid CommandId {0x06cf4a0a, 0x5762, 0x402f, 0xa3, 0xd9, 0x0b, 0x96, 0x8f, 0x5b, 0x8f,
    0x41}; // {06CF4A0A-5762-402F-A3D9-0B968F5B8F41}

} // namespace NVB::Common::Communication::V2::Repository::RemoveDataBunch
