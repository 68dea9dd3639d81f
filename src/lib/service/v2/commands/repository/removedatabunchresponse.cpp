#include "removedatabunchresponse.h"

namespace NVB::Common::Communication::V2::Repository::RemoveDataBunch {

QJsonObject Response::toJson() const
{
    return {};
}

bool Response::fromJson(const QJsonObject& object)
{
    Q_UNUSED(object)
    return true;
}

} // namespace NVB::Common::Communication::V2::Repository::RemoveDataBunch
