#pragma once

#include <QUuid>

#include "service/v2/commands/repository/startdeepsyncrequest.h"
#include "service/v2/commands/repository/startdeepsyncresponse.h"

namespace NVB::Common::Communication::V2::Repository::StartDeepSync {

inline constexpr QUuid CommandId {0xafec96b7, 0x4b76, 0x456f, 0x8b, 0x5d, 0x25, 0x12, 0x00, 0xd2, 0x3f,
    0x8c}; // {AFEC96B7-4B76-456F-8B5D-251200D23F8C}

} // namespace NVB::Common::Communication::V2::Repository::StartDeepSync
