#pragma once

#include <QUuid>

#include "service/uuidliteral.h"
#include "service/v2/commands/repository/removedatagenerationrequest.h"
#include "service/v2/commands/repository/removedatagenerationresponse.h"

namespace NVB::Common::Communication::V2::Repository::RemoveDataGeneration {

inline constexpr QUuid CommandId = uuidLiteral("{52C2E279-DA63-4829-971F-218D21195F6D}");

} // namespace NVB::Common::Communication::V2::Repository::RemoveDataGeneration
