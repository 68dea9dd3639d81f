#pragma once

#include <QJsonObject>

#include "service/notification/iparser.h"

namespace NVB::Common::Communication::Notification {

// The parser of every known V1 notification: they differ only by the keys of
// their message, which callers read by the catalogue's constants.
class Parser : public IParser
{
public:
    Parser(const QUuid& type, const QJsonObject& message);

    QUuid type() const override { return m_type; }
    QMap<QString, QVariant> message() const override;

private:
    QUuid m_type;
    QJsonObject m_message;
};

} // namespace NVB::Common::Communication::Notification
