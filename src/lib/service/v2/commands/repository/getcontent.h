#pragma once

#include <QUuid>

#include "service/uuidliteral.h"
#include "service/v2/commands/repository/getcontentrequest.h"
#include "service/v2/commands/repository/getcontentresponse.h"

namespace NVB::Common::Communication::V2::Repository::GetContent {

inline constexpr QUuid CommandId = uuidLiteral("{FC29F0FA-6652-4BB8-AA28-EB4FD99806AE}");

} // namespace NVB::Common::Communication::V2::Repository::GetContent
