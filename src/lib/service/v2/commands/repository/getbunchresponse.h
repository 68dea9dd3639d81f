#pragma once

#include <QJsonObject>

#include "service/v2/command.h"

namespace NVB::Common::Communication::V2::Repository::GetBunch {

class Response : public Command::Response
{
public:
    QJsonObject toJson() const override;
    bool fromJson(const QJsonObject& object) override;

    QJsonObject bunch() const { return m_bunch; }
    void setBunch(const QJsonObject& value) { m_bunch = value; }

private:
    QJsonObject m_bunch;
};

} // namespace NVB::Common::Communication::V2::Repository::GetBunch
