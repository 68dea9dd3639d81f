#pragma once

#include <QUuid>

#include "service/v2/commands/repository/getrestorepointlistrequest.h"
#include "service/v2/commands/repository/getrestorepointlistresponse.h"

namespace NVB::Common::Communication::V2::Repository::GetRestorePointList {

inline constexpr QUuid CommandId {0x3f305e04, 0x4cad, 0x41c8, 0x93, 0x4b, 0x7a, 0x74, 0xdf, 0x47, 0xe6,
    0xb8}; // {3F305E04-4CAD-41C8-934B-7A74DF47E6B8}

} // namespace NVB::Common::Communication::V2::Repository::GetRestorePointList
