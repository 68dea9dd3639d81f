#pragma once

#include <QUuid>

#include "service/uuidliteral.h"
#include "service/v2/commands/getconnectionrequest.h"
#include "service/v2/commands/getconnectionresponse.h"

namespace NVB::Common::Communication::V2::GetConnection {

inline constexpr QUuid CommandId = uuidLiteral("{184E5047-7039-4684-BD6A-137970A5700F}");

} // namespace NVB::Common::Communication::V2::GetConnection
