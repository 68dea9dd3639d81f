#include "getgenerationlistresponse.h"

#include "service/v2/jsonfields.h"

namespace NVB::Common::Communication::V2::Repository::GetGenerationList {

QJsonObject Response::toJson() const
{
    QJsonObject object;
    object.insert(QStringLiteral("generationList"), m_generationList);
    return object;
}

bool Response::fromJson(const QJsonObject& object)
{
    if (!Json::readArray(object, QStringLiteral("generationList"), m_generationList))
        return false;
    return true;
}

} // namespace NVB::Common::Communication::V2::Repository::GetGenerationList
