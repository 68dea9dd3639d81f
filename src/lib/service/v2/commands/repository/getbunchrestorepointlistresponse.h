#pragma once

#include <QJsonArray>
#include <QJsonObject>

#include "service/v2/command.h"

namespace NVB::Common::Communication::V2::Repository::GetBunchRestorePointList {

class Response : public Command::Response
{
public:
    QJsonObject toJson() const override;
    bool fromJson(const QJsonObject& object) override;

    QJsonArray restorePointList() const { return m_restorePointList; }
    void setRestorePointList(const QJsonArray& value) { m_restorePointList = value; }

private:
    QJsonArray m_restorePointList;
};

} // namespace NVB::Common::Communication::V2::Repository::GetBunchRestorePointList
