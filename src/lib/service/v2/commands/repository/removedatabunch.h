#pragma once

#include <QUuid>

#include "service/uuidliteral.h"
#include "service/v2/commands/repository/removedatabunchrequest.h"
#include "service/v2/commands/repository/removedatabunchresponse.h"

namespace NVB::Common::Communication::V2::Repository::RemoveDataBunch {

inline constexpr QUuid CommandId = uuidLiteral("{06CF4A0A-5762-402F-A3D9-0B968F5B8F41}");

} // namespace NVB::Common::Communication::V2::Repository::RemoveDataBunch
