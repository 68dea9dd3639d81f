#pragma once

#include <QUuid>

#include "service/uuidliteral.h"
#include "service/v2/commands/getconnectionbyidrequest.h"
#include "service/v2/commands/getconnectionbyidresponse.h"

namespace NVB::Common::Communication::V2::GetConnectionById {

inline constexpr QUuid CommandId = uuidLiteral("{DC0B508A-2837-4D08-A2E5-D684B5417680}");

} // namespace NVB::Common::Communication::V2::GetConnectionById
