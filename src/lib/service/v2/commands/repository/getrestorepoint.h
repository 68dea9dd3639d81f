#pragma once

#include <QUuid>

#include "service/uuidliteral.h"
#include "service/v2/commands/repository/getrestorepointrequest.h"
#include "service/v2/commands/repository/getrestorepointresponse.h"

namespace NVB::Common::Communication::V2::Repository::GetRestorePoint {

inline constexpr QUuid CommandId = uuidLiteral("{FF171608-B82B-43E2-A6A0-2386F76626F2}");

} // namespace NVB::Common::Communication::V2::Repository::GetRestorePoint
