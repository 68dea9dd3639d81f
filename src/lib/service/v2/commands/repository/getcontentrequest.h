#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <QString>
#include <QUuid>

#include "service/v2/command.h"

namespace NVB::Common::Communication::V2::Repository::GetContent {

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
    int limit() const { return m_limit; }
    void setLimit(int value) { m_limit = value; }
    int offset() const { return m_offset; }
    void setOffset(int value) { m_offset = value; }
    QString path() const { return m_path; }
    void setPath(const QString& value) { m_path = value; }
    QDateTime restorPoint() const { return m_restorPoint; }
    void setRestorPoint(const QDateTime& value) { m_restorPoint = value; }

private:
    QUuid m_bunchId;
    QUuid m_connectionId;
    QUuid m_generationId;
    int m_limit = 0;
    int m_offset = 0;
    QString m_path;
    QDateTime m_restorPoint;
};

} // namespace NVB::Common::Communication::V2::Repository::GetContent
