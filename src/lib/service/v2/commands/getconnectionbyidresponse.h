#pragma once

#include <QJsonObject>

#include "service/v2/command.h"

namespace NVB::Common::Communication::V2::GetConnectionById {

class Response : public Command::Response
{
public:
    QJsonObject toJson() const override;
    bool fromJson(const QJsonObject& object) override;

    QJsonObject connectionInfo() const { return m_connectionInfo; }
    void setConnectionInfo(const QJsonObject& value) { m_connectionInfo = value; }

private:
    QJsonObject m_connectionInfo;
};

} // namespace NVB::Common::Communication::V2::GetConnectionById
