#pragma once

#include <QJsonArray>
#include <QJsonObject>

#include "service/v2/command.h"

namespace NVB::Common::Communication::V2::Repository::GetGenerationList {

class Response : public Command::Response
{
public:
    QJsonObject toJson() const override;
    bool fromJson(const QJsonObject& object) override;

    QJsonArray generationList() const { return m_generationList; }
    void setGenerationList(const QJsonArray& value) { m_generationList = value; }

private:
    QJsonArray m_generationList;
};

} // namespace NVB::Common::Communication::V2::Repository::GetGenerationList
