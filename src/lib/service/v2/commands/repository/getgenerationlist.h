#pragma once

#include <QUuid>

#include "service/uuidliteral.h"
#include "service/v2/commands/repository/getgenerationlistrequest.h"
#include "service/v2/commands/repository/getgenerationlistresponse.h"

namespace NVB::Common::Communication::V2::Repository::GetGenerationList {

inline constexpr QUuid CommandId = uuidLiteral("{2F5C678D-9F4A-4783-BCD6-112497F4DC9B}");

} // namespace NVB::Common::Communication::V2::Repository::GetGenerationList
