#pragma once

#include <QJsonDocument>
#include <QSet>
#include <QUuid>

namespace NVB::Common::Communication::Notification {

class IParser;

// Recognises V1 notifications: a JSON object whose "type" is one of the
// catalogue's notification types and whose "Message", when present, is an
// object.
class ParserFactory
{
public:
    static ParserFactory& instance();

    // A new parser owned by the caller, or null for anything else.
    IParser* create(const QJsonDocument& document) const;

    bool isKnownType(const QUuid& type) const { return m_types.contains(type); }

private:
    ParserFactory();
    QSet<QUuid> m_types;
};

} // namespace NVB::Common::Communication::Notification
