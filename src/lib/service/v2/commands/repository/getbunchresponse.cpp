#include "getbunchresponse.h"

#include "service/v2/jsonfields.h"

namespace NVB::Common::Communication::V2::Repository::GetBunch {

QJsonObject Response::toJson() const
{
    QJsonObject object;
    object.insert(QStringLiteral("bunch"), m_bunch);
    return object;
}

bool Response::fromJson(const QJsonObject& object)
{
    if (!Json::readObject(object, QStringLiteral("bunch"), m_bunch))
        return false;
    return true;
}

} // namespace NVB::Common::Communication::V2::Repository::GetBunch
