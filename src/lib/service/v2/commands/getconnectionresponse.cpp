#include "getconnectionresponse.h"

#include "service/v2/jsonfields.h"

namespace NVB::Common::Communication::V2::GetConnection {

QJsonObject Response::toJson() const
{
    QJsonObject object;
    object.insert(QStringLiteral("connections"), m_connections);
    return object;
}

bool Response::fromJson(const QJsonObject& object)
{
    if (!Json::readArray(object, QStringLiteral("connections"), m_connections))
        return false;
    return true;
}

} // namespace NVB::Common::Communication::V2::GetConnection
