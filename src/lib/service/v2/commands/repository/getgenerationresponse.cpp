#include "getgenerationresponse.h"

#include "service/v2/jsonfields.h"

namespace NVB::Common::Communication::V2::Repository::GetGeneration {

QJsonObject Response::toJson() const
{
    QJsonObject object;
    object.insert(QStringLiteral("generation"), m_generation);
    return object;
}

bool Response::fromJson(const QJsonObject& object)
{
    if (!Json::readObject(object, QStringLiteral("generation"), m_generation))
        return false;
    return true;
}

} // namespace NVB::Common::Communication::V2::Repository::GetGeneration
