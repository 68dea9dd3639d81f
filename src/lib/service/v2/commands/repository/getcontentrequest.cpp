#include "getcontentrequest.h"

#include "service/v2/jsonfields.h"

namespace NVB::Common::Communication::V2::Repository::GetContent {

QJsonObject Request::toJson() const
{
    QJsonObject object;
    object.insert(QStringLiteral("bunchId"), m_bunchId.toString());
    object.insert(QStringLiteral("connectionId"), m_connectionId.toString());
    object.insert(QStringLiteral("generationId"), m_generationId.toString());
    object.insert(QStringLiteral("limit"), m_limit);
    object.insert(QStringLiteral("offset"), m_offset);
    object.insert(QStringLiteral("path"), m_path);
    object.insert(QStringLiteral("restorPoint"), Json::fromDateTime(m_restorPoint));
    return object;
}

bool Request::fromJson(const QJsonObject& object)
{
    if (!Json::readUuid(object, QStringLiteral("bunchId"), m_bunchId))
        return false;
    if (!Json::readUuid(object, QStringLiteral("connectionId"), m_connectionId))
        return false;
    if (!Json::readUuid(object, QStringLiteral("generationId"), m_generationId))
        return false;
    if (!Json::readInt(object, QStringLiteral("limit"), m_limit))
        return false;
    if (!Json::readInt(object, QStringLiteral("offset"), m_offset))
        return false;
    if (!Json::readString(object, QStringLiteral("path"), m_path))
        return false;
    if (!Json::readDateTime(object, QStringLiteral("restorPoint"), m_restorPoint))
        return false;
    return true;
}

} // namespace NVB::Common::Communication::V2::Repository::GetContent
