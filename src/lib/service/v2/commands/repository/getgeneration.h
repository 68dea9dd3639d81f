#pragma once

#include <QUuid>

#include "service/uuidliteral.h"
#include "service/v2/commands/repository/getgenerationrequest.h"
#include "service/v2/commands/repository/getgenerationresponse.h"

namespace NVB::Common::Communication::V2::Repository::GetGeneration {

inline constexpr QUuid CommandId = uuidLiteral("{131AC877-559F-460A-8685-4E9EE0ACB70C}");

} // namespace NVB::Common::Communication::V2::Repository::GetGeneration
