#include "getrestorepointresponse.h"

#include "service/v2/jsonfields.h"

namespace NVB::Common::Communication::V2::Repository::GetRestorePoint {

QJsonObject Response::toJson() const
{
    QJsonObject object;
    object.insert(QStringLiteral("restorePoint"), m_restorePoint);
    return object;
}

bool Response::fromJson(const QJsonObject& object)
{
    if (!Json::readObject(object, QStringLiteral("restorePoint"), m_restorePoint))
        return false;
    return true;
}

} // namespace NVB::Common::Communication::V2::Repository::GetRestorePoint
