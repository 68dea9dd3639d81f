#pragma once

#include <QJsonObject>

#include "service/v2/command.h"

namespace NVB::Common::Communication::V2::Plan::GetPlan {

class Response : public Command::Response
{
public:
    QJsonObject toJson() const override;
    bool fromJson(const QJsonObject& object) override;

    QJsonObject plan() const { return m_plan; }
    void setPlan(const QJsonObject& value) { m_plan = value; }

private:
    QJsonObject m_plan;
};

} // namespace NVB::Common::Communication::V2::Plan::GetPlan
