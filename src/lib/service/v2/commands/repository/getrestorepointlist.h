#pragma once

#include <QUuid>

#include "service/uuidliteral.h"
#include "service/v2/commands/repository/getrestorepointlistrequest.h"
#include "service/v2/commands/repository/getrestorepointlistresponse.h"

namespace NVB::Common::Communication::V2::Repository::GetRestorePointList {

inline constexpr QUuid CommandId = uuidLiteral("{3F305E04-4CAD-41C8-934B-7A74DF47E6B8}");

} // namespace NVB::Common::Communication::V2::Repository::GetRestorePointList
