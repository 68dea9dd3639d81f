#pragma once

#include <QUuid>

#include "service/v2/commands/getconnectionrequest.h"
#include "service/v2/commands/getconnectionresponse.h"

namespace NVB::Common::Communication::V2::GetConnection {

inline constexpr QUuid CommandId {0x184e5047, 0x7039, 0x4684, 0xbd, 0x6a, 0x13, 0x79, 0x70, 0xa5, 0x70,
    0x0f}; // {184E5047-7039-4684-BD6A-137970A5700F}

} // namespace NVB::Common::Communication::V2::GetConnection
