#pragma once

#include <QUuid>

#include "service/v2/commands/repository/getgenerationrequest.h"
#include "service/v2/commands/repository/getgenerationresponse.h"

namespace NVB::Common::Communication::V2::Repository::GetGeneration {

inline constexpr QUuid CommandId {0x131ac877, 0x559f, 0x460a, 0x86, 0x85, 0x4e, 0x9e, 0xe0, 0xac, 0xb7,
    0x0c}; // {131AC877-559F-460A-8685-4E9EE0ACB70C}

} // namespace NVB::Common::Communication::V2::Repository::GetGeneration
