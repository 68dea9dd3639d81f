#include "getbunchlistresponse.h"

#include "service/v2/jsonfields.h"

namespace NVB::Common::Communication::V2::Repository::GetBunchList {

QJsonObject Response::toJson() const
{
    QJsonObject object;
    object.insert(QStringLiteral("bunchList"), m_bunchList);
    return object;
}

bool Response::fromJson(const QJsonObject& object)
{
    if (!Json::readArray(object, QStringLiteral("bunchList"), m_bunchList))
        return false;
    return true;
}

} // namespace NVB::Common::Communication::V2::Repository::GetBunchList
