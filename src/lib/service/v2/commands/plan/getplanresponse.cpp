#include "getplanresponse.h"

#include "service/v2/jsonfields.h"

namespace NVB::Common::Communication::V2::Plan::GetPlan {

QJsonObject Response::toJson() const
{
    QJsonObject object;
    object.insert(QStringLiteral("plan"), m_plan);
    return object;
}

bool Response::fromJson(const QJsonObject& object)
{
    if (!Json::readObject(object, QStringLiteral("plan"), m_plan))
        return false;
    return true;
}

} // namespace NVB::Common::Communication::V2::Plan::GetPlan
