#pragma once

#include <QJsonArray>
#include <QJsonObject>

#include "service/v2/command.h"

namespace NVB::Common::Communication::V2::GetConnection {

class Response : public Command::Response
{
public:
    QJsonObject toJson() const override;
    bool fromJson(const QJsonObject& object) override;

    QJsonArray connections() const { return m_connections; }
    void setConnections(const QJsonArray& value) { m_connections = value; }

private:
    QJsonArray m_connections;
};

} // namespace NVB::Common::Communication::V2::GetConnection
