#pragma once

#include <QUuid>

#include "service/v2/commands/repository/getbunchrestorepointlistrequest.h"
#include "service/v2/commands/repository/getbunchrestorepointlistresponse.h"

namespace NVB::Common::Communication::V2::Repository::GetBunchRestorePointList {

inline constexpr QUuid CommandId {0x92ad6c2a, 0xec6d, 0x491c, 0x84, 0x40, 0x8b, 0xa1, 0xc5, 0xbd, 0xb2,
    0x10}; // {92AD6C2A-EC6D-491C-8440-8BA1C5BDB210}

} // namespace NVB::Common::Communication::V2::Repository::GetBunchRestorePointList
