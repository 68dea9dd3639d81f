#pragma once

#include <QUuid>

#include "service/v2/commands/repository/getgenerationlistrequest.h"
#include "service/v2/commands/repository/getgenerationlistresponse.h"

namespace NVB::Common::Communication::V2::Repository::GetGenerationList {

inline constexpr QUuid CommandId {0x2f5c678d, 0x9f4a, 0x4783, 0xbc, 0xd6, 0x11, 0x24, 0x97, 0xf4, 0xdc,
    0x9b}; // {2F5C678D-9F4A-4783-BCD6-112497F4DC9B}

} // namespace NVB::Common::Communication::V2::Repository::GetGenerationList
