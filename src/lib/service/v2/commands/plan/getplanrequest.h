#pragma once

#include <QJsonObject>
#include <QUuid>

#include "service/v2/command.h"

namespace NVB::Common::Communication::V2::Plan::GetPlan {

class Request : public Command::Request
{
public:
    QJsonObject toJson() const override;
    bool fromJson(const QJsonObject& object) override;

    QUuid planId() const { return m_planId; }
    void setPlanId(const QUuid& value) { m_planId = value; }

private:
    QUuid m_planId;
};

} // namespace NVB::Common::Communication::V2::Plan::GetPlan
