#pragma once

#include <QUuid>

#include "service/v2/commands/repository/getrestorepointrequest.h"
#include "service/v2/commands/repository/getrestorepointresponse.h"

namespace NVB::Common::Communication::V2::Repository::GetRestorePoint {

inline constexpr QUuid CommandId {0xff171608, 0xb82b, 0x43e2, 0xa6, 0xa0, 0x23, 0x86, 0xf7, 0x66, 0x26,
    0xf2}; // {FF171608-B82B-43E2-A6A0-2386F76626F2}

} // namespace NVB::Common::Communication::V2::Repository::GetRestorePoint
