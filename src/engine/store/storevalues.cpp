#include "storevalues.h"

namespace NVB::Engine::StoreValues {

QString text(const QUuid& id)
{
    return id.isNull() ? QString() : id.toString();
}

QVariant str(const QString& value)
{
    // Qt binds a null QString as SQL NULL; the columns hold empty texts instead.
    return QVariant(value.isNull() ? QStringLiteral("") : value);
}

QVariant stamp(const QDateTime& utc)
{
    return utc.isValid() ? QVariant(utc.toUTC().toString(Qt::ISODateWithMs)) : QVariant(QVariant::String);
}

QDateTime readStamp(const QVariant& value)
{
    QDateTime parsed = QDateTime::fromString(value.toString(), Qt::ISODateWithMs);
    if (parsed.isValid())
        parsed = parsed.toUTC();
    return parsed;
}

} // namespace NVB::Engine::StoreValues
