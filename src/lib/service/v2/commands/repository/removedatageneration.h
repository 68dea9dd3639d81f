#pragma once

#include <QUuid>

#include "service/v2/commands/repository/removedatagenerationrequest.h"
#include "service/v2/commands/repository/removedatagenerationresponse.h"

namespace NVB::Common::Communication::V2::Repository::RemoveDataGeneration {

inline constexpr QUuid CommandId {0x52c2e279, 0xda63, 0x4829, 0x97, 0x1f, 0x21, 0x8d, 0x21, 0x19, 0x5f,
    0x6d}; // {52C2E279-DA63-4829-971F-218D21195F6D}

} // namespace NVB::Common::Communication::V2::Repository::RemoveDataGeneration
