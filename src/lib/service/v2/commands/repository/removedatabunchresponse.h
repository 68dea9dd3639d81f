#pragma once

#include <QJsonObject>

#include "service/v2/command.h"

namespace NVB::Common::Communication::V2::Repository::RemoveDataBunch {

class Response : public Command::Response
{
public:
    QJsonObject toJson() const override;
    bool fromJson(const QJsonObject& object) override;
};

} // namespace NVB::Common::Communication::V2::Repository::RemoveDataBunch
