#pragma once

#include <QJsonObject>

#include "service/v2/command.h"

namespace NVB::Common::Communication::V2::Repository::GetGeneration {

class Response : public Command::Response
{
public:
    QJsonObject toJson() const override;
    bool fromJson(const QJsonObject& object) override;

    QJsonObject generation() const { return m_generation; }
    void setGeneration(const QJsonObject& value) { m_generation = value; }

private:
    QJsonObject m_generation;
};

} // namespace NVB::Common::Communication::V2::Repository::GetGeneration
