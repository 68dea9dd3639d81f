#pragma once

#include <QJsonObject>
#include <QUuid>

#include "service/v2/command.h"

namespace NVB::Common::Communication::V2::Repository::GetBunchList {

class Request : public Command::Request
{
public:
    QJsonObject toJson() const override;
    bool fromJson(const QJsonObject& object) override;

    QUuid connectionId() const { return m_connectionId; }
    void setConnectionId(const QUuid& value) { m_connectionId = value; }

private:
    QUuid m_connectionId;
};

} // namespace NVB::Common::Communication::V2::Repository::GetBunchList
