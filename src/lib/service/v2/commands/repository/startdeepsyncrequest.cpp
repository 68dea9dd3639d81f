#include "startdeepsyncrequest.h"

#include "service/v2/jsonfields.h"

namespace NVB::Common::Communication::V2::Repository::StartDeepSync {

QJsonObject Request::toJson() const
{
    QJsonObject object;
    object.insert(QStringLiteral("bunchId"), m_bunchId.toString());
    object.insert(QStringLiteral("connectionId"), m_connectionId.toString());
    object.insert(QStringLiteral("generationId"), m_generationId.toString());
    object.insert(QStringLiteral("password"), m_password);
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
    if (!Json::readString(object, QStringLiteral("password"), m_password))
        return false;
    return true;
}

} // namespace NVB::Common::Communication::V2::Repository::StartDeepSync
