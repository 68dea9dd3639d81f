#include "getbunchrequest.h"

#include "service/v2/jsonfields.h"

namespace NVB::Common::Communication::V2::Repository::GetBunch {

QJsonObject Request::toJson() const
{
    QJsonObject object;
    object.insert(QStringLiteral("bunchId"), m_bunchId.toString());
    object.insert(QStringLiteral("connectionId"), m_connectionId.toString());
    return object;
}

bool Request::fromJson(const QJsonObject& object)
{
    if (!Json::readUuid(object, QStringLiteral("bunchId"), m_bunchId))
        return false;
    if (!Json::readUuid(object, QStringLiteral("connectionId"), m_connectionId))
        return false;
    return true;
}

} // namespace NVB::Common::Communication::V2::Repository::GetBunch
