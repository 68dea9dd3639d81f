#pragma once

#include <QJsonObject>
#include <QUuid>

#include "service/v2/command.h"

namespace NVB::Common::Communication::V2::Repository::GetGeneration {

class Request : public Command::Request
{
public:
    QJsonObject toJson() const override;
    bool fromJson(const QJsonObject& object) override;

    QUuid bunchId() const { return m_bunchId; }
    void setBunchId(const QUuid& value) { m_bunchId = value; }
    QUuid connectionId() const { return m_connectionId; }
    void setConnectionId(const QUuid& value) { m_connectionId = value; }
    QUuid generationId() const { return m_generationId; }
    void setGenerationId(const QUuid& value) { m_generationId = value; }

private:
    QUuid m_bunchId;
    QUuid m_connectionId;
    QUuid m_generationId;
};

} // namespace NVB::Common::Communication::V2::Repository::GetGeneration
