#pragma once

#include <QUuid>

#include "service/uuidliteral.h"
#include "service/v2/commands/repository/startdeepsyncrequest.h"
#include "service/v2/commands/repository/startdeepsyncresponse.h"

namespace NVB::Common::Communication::V2::Repository::StartDeepSync {

inline constexpr QUuid CommandId = uuidLiteral("{AFEC96B7-4B76-456F-8B5D-251200D23F8C}");

} // namespace NVB::Common::Communication::V2::Repository::StartDeepSync
