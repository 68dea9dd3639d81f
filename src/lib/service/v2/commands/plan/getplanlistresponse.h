#pragma once

#include <QJsonArray>
#include <QJsonObject>

#include "service/v2/command.h"

namespace NVB::Common::Communication::V2::Plan::GetPlanList {

class Response : public Command::Response
{
public:
    QJsonObject toJson() const override;
    bool fromJson(const QJsonObject& object) override;

    QJsonArray planList() const { return m_planList; }
    void setPlanList(const QJsonArray& value) { m_planList = value; }

private:
    QJsonArray m_planList;
};

} // namespace NVB::Common::Communication::V2::Plan::GetPlanList
