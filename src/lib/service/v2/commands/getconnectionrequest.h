#pragma once

#include <QJsonObject>

#include "service/v2/command.h"

namespace NVB::Common::Communication::V2::GetConnection {

class Request : public Command::Request
{
public:
    QJsonObject toJson() const override;
    bool fromJson(const QJsonObject& object) override;
};

} // namespace NVB::Common::Communication::V2::GetConnection
