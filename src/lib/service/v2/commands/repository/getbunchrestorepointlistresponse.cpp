#include "getbunchrestorepointlistresponse.h"

#include "service/v2/jsonfields.h"

namespace NVB::Common::Communication::V2::Repository::GetBunchRestorePointList {

QJsonObject Response::toJson() const
{
    QJsonObject object;
    object.insert(QStringLiteral("restorePointList"), m_restorePointList);
    return object;
}

bool Response::fromJson(const QJsonObject& object)
{
    if (!Json::readArray(object, QStringLiteral("restorePointList"), m_restorePointList))
        return false;
    return true;
}

} // namespace NVB::Common::Communication::V2::Repository::GetBunchRestorePointList
