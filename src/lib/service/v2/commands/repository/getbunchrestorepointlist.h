#pragma once

#include <QUuid>

#include "service/uuidliteral.h"
#include "service/v2/commands/repository/getbunchrestorepointlistrequest.h"
#include "service/v2/commands/repository/getbunchrestorepointlistresponse.h"

namespace NVB::Common::Communication::V2::Repository::GetBunchRestorePointList {

inline constexpr QUuid CommandId = uuidLiteral("{92AD6C2A-EC6D-491C-8440-8BA1C5BDB210}");

} // namespace NVB::Common::Communication::V2::Repository::GetBunchRestorePointList
