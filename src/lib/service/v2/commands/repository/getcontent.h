#pragma once

#include <QUuid>

#include "service/v2/commands/repository/getcontentrequest.h"
#include "service/v2/commands/repository/getcontentresponse.h"

namespace NVB::Common::Communication::V2::Repository::GetContent {

inline constexpr QUuid CommandId {0xfc29f0fa, 0x6652, 0x4bb8, 0xaa, 0x28, 0xeb, 0x4f, 0xd9, 0x98, 0x06,
    0xae}; // {FC29F0FA-6652-4BB8-AA28-EB4FD99806AE}

} // namespace NVB::Common::Communication::V2::Repository::GetContent
