#pragma once

#include <QUuid>

#include "service/v2/commands/getconnectionbyidrequest.h"
#include "service/v2/commands/getconnectionbyidresponse.h"

namespace NVB::Common::Communication::V2::GetConnectionById {

inline constexpr QUuid CommandId {0xdc0b508a, 0x2837, 0x4d08, 0xa2, 0xe5, 0xd6, 0x84, 0xb5, 0x41, 0x76,
    0x80}; // {DC0B508A-2837-4D08-A2E5-D684B5417680}

} // namespace NVB::Common::Communication::V2::GetConnectionById
