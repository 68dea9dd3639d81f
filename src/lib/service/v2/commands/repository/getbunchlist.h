#pragma once

#include <QUuid>

#include "service/uuidliteral.h"
#include "service/v2/commands/repository/getbunchlistrequest.h"
#include "service/v2/commands/repository/getbunchlistresponse.h"

namespace NVB::Common::Communication::V2::Repository::GetBunchList {

inline constexpr QUuid CommandId = uuidLiteral("{33DF6975-2C49-431B-98D0-0ED4F117090A}");

} // namespace NVB::Common::Communication::V2::Repository::GetBunchList
