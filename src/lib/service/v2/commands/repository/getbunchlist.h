#pragma once

#include <QUuid>

#include "service/v2/commands/repository/getbunchlistrequest.h"
#include "service/v2/commands/repository/getbunchlistresponse.h"

namespace NVB::Common::Communication::V2::Repository::GetBunchList {

inline constexpr QUuid CommandId {0x33df6975, 0x2c49, 0x431b, 0x98, 0xd0, 0x0e, 0xd4, 0xf1, 0x17, 0x09,
    0x0a}; // {33DF6975-2C49-431B-98D0-0ED4F117090A}

} // namespace NVB::Common::Communication::V2::Repository::GetBunchList
