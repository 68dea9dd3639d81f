#include "getplanrequest.h"

#include "service/v2/jsonfields.h"

namespace NVB::Common::Communication::V2::Plan::GetPlan {

QJsonObject Request::toJson() const
{
    QJsonObject object;
    object.insert(QStringLiteral("planId"), m_planId.toString());
    return object;
}

bool Request::fromJson(const QJsonObject& object)
{
    if (!Json::readUuid(object, QStringLiteral("planId"), m_planId))
        return false;
    return true;
}

} // namespace NVB::Common::Communication::V2::Plan::GetPlan
