#include "getplanlistresponse.h"

#include "service/v2/jsonfields.h"

namespace NVB::Common::Communication::V2::Plan::GetPlanList {

QJsonObject Response::toJson() const
{
    QJsonObject object;
    object.insert(QStringLiteral("planList"), m_planList);
    return object;
}

bool Response::fromJson(const QJsonObject& object)
{
    if (!Json::readArray(object, QStringLiteral("planList"), m_planList))
        return false;
    return true;
}

} // namespace NVB::Common::Communication::V2::Plan::GetPlanList
