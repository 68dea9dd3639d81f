#pragma once

#include <QUuid>

#include "service/uuidliteral.h"
#include "service/v2/commands/repository/getbunchrequest.h"
#include "service/v2/commands/repository/getbunchresponse.h"

namespace NVB::Common::Communication::V2::Repository::GetBunch {

inline constexpr QUuid CommandId = uuidLiteral("{109DC706-A63D-493B-9EEA-B9AC5698021E}");

} // namespace NVB::Common::Communication::V2::Repository::GetBunch
