#pragma once

#include <QJsonArray>
#include <QJsonObject>

#include "service/v2/command.h"

namespace NVB::Common::Communication::V2::Repository::GetContent {

class Response : public Command::Response
{
public:
    QJsonObject toJson() const override;
    bool fromJson(const QJsonObject& object) override;

    QJsonArray objects() const { return m_objects; }
    void setObjects(const QJsonArray& value) { m_objects = value; }
    int offset() const { return m_offset; }
    void setOffset(int value) { m_offset = value; }

private:
    QJsonArray m_objects;
    int m_offset = 0;
};

} // namespace NVB::Common::Communication::V2::Repository::GetContent
