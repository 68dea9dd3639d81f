#include "parserfactory.h"

#include <QJsonObject>

#include "service/notification/format.h"
#include "service/notification/parser.h"

namespace NVB::Common::Communication::Notification {

ParserFactory& ParserFactory::instance()
{
    static ParserFactory factory;
    return factory;
}

ParserFactory::ParserFactory()
{
    for (const QUuid& type : Format::allTypes())
        m_types.insert(type);
}

IParser* ParserFactory::create(const QJsonDocument& document) const
{
    if (!document.isObject())
        return nullptr;
    const QJsonObject object = document.object();
    const QJsonValue type = object.value(QLatin1String(Format::Header::Type));
    const QJsonValue message = object.value(QLatin1String(Format::Header::Message));
    if (!type.isString() || !(message.isUndefined() || message.isObject()))
        return nullptr;
    const QUuid id(type.toString());
    if (id.isNull() || !m_types.contains(id))
        return nullptr;
    return new Parser(id, message.toObject());
}

} // namespace NVB::Common::Communication::Notification
