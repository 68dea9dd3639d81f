#include "getconnectionbyidresponse.h"

#include "service/v2/jsonfields.h"

namespace NVB::Common::Communication::V2::GetConnectionById {

QJsonObject Response::toJson() const
{
    QJsonObject object;
    object.insert(QStringLiteral("connectionInfo"), m_connectionInfo);
    return object;
}

bool Response::fromJson(const QJsonObject& object)
{
    if (!Json::readObject(object, QStringLiteral("connectionInfo"), m_connectionInfo))
        return false;
    return true;
}

} // namespace NVB::Common::Communication::V2::GetConnectionById
