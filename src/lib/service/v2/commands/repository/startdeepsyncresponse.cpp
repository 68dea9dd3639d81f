#include "startdeepsyncresponse.h"

namespace NVB::Common::Communication::V2::Repository::StartDeepSync {

QJsonObject Response::toJson() const
{
    return {};
}

bool Response::fromJson(const QJsonObject& object)
{
    Q_UNUSED(object)
    return true;
}

} // namespace NVB::Common::Communication::V2::Repository::StartDeepSync
