#pragma once

#include <QJsonObject>

#include "service/v2/command.h"

namespace NVB::Common::Communication::V2::Repository::GetRestorePoint {

class Response : public Command::Response
{
public:
    QJsonObject toJson() const override;
    bool fromJson(const QJsonObject& object) override;

    QJsonObject restorePoint() const { return m_restorePoint; }
    void setRestorePoint(const QJsonObject& value) { m_restorePoint = value; }

private:
    QJsonObject m_restorePoint;
};

} // namespace NVB::Common::Communication::V2::Repository::GetRestorePoint
