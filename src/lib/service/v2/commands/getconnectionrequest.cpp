#include "getconnectionrequest.h"

namespace NVB::Common::Communication::V2::GetConnection {

QJsonObject Request::toJson() const
{
    return {};
}

bool Request::fromJson(const QJsonObject& object)
{
    Q_UNUSED(object)
    return true;
}

} // namespace NVB::Common::Communication::V2::GetConnection
