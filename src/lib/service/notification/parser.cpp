#include "parser.h"

namespace NVB::Common::Communication::Notification {

Parser::Parser(const QUuid& type, const QJsonObject& message)
    : m_type(type)
    , m_message(message)
{ }

QMap<QString, QVariant> Parser::message() const
{
    return m_message.toVariantMap();
}

} // namespace NVB::Common::Communication::Notification
