#pragma once

#include <QJsonArray>
#include <QJsonObject>

#include "service/v2/command.h"

namespace NVB::Common::Communication::V2::Repository::GetBunchList {

class Response : public Command::Response
{
public:
    QJsonObject toJson() const override;
    bool fromJson(const QJsonObject& object) override;

    QJsonArray bunchList() const { return m_bunchList; }
    void setBunchList(const QJsonArray& value) { m_bunchList = value; }

private:
    QJsonArray m_bunchList;
};

} // namespace NVB::Common::Communication::V2::Repository::GetBunchList
