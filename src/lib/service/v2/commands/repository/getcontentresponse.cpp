#include "getcontentresponse.h"

#include "service/v2/jsonfields.h"

namespace NVB::Common::Communication::V2::Repository::GetContent {

QJsonObject Response::toJson() const
{
    QJsonObject object;
    object.insert(QStringLiteral("objects"), m_objects);
    object.insert(QStringLiteral("offset"), m_offset);
    return object;
}

bool Response::fromJson(const QJsonObject& object)
{
    if (!Json::readArray(object, QStringLiteral("objects"), m_objects))
        return false;
    if (!Json::readInt(object, QStringLiteral("offset"), m_offset))
        return false;
    return true;
}

} // namespace NVB::Common::Communication::V2::Repository::GetContent
