#include "recordjson.h"

#include <cmath>
#include <limits>

#include <QJsonValue>

namespace NVB::Info {

namespace {

const QString DateTimeFormat = QStringLiteral("yyyy-MM-dd'T'HH:mm:ss.zzz'Z'");

QJsonValue value(const QJsonObject& object, const QString& key, const QString& record)
{
    const auto it = object.constFind(key);
    if (it == object.constEnd())
        throw QStringLiteral("Missing key \"%1\" in %2").arg(key, record);
    return it.value();
}

QString wrongType(const QString& key, const QString& record, const QString& expected)
{
    return QStringLiteral("Key \"%1\" of %2 is not %3").arg(key, record, expected);
}

} // namespace

QString RecordJson::fromUuid(const QUuid& id)
{
    return id.isNull() ? QString() : id.toString(QUuid::WithBraces);
}

QString RecordJson::fromDateTime(const QDateTime& moment)
{
    return moment.isValid() ? moment.toUTC().toString(DateTimeFormat) : QString();
}

QString RecordJson::fromUInt64(quint64 value)
{
    return QString::number(value);
}

QUuid RecordJson::toUuid(const QJsonObject& object, const QString& key, const QString& record)
{
    const QJsonValue v = value(object, key, record);
    const QUuid id = QUuid::fromString(v.toString());
    if (!v.isString() || id.isNull())
        throw wrongType(key, record, QStringLiteral("an id"));
    return id;
}

QString RecordJson::toString(const QJsonObject& object, const QString& key, const QString& record)
{
    const QJsonValue v = value(object, key, record);
    if (!v.isString())
        throw wrongType(key, record, QStringLiteral("a text"));
    return v.toString();
}

bool RecordJson::toBool(const QJsonObject& object, const QString& key, const QString& record)
{
    const QJsonValue v = value(object, key, record);
    if (!v.isBool())
        throw wrongType(key, record, QStringLiteral("a boolean"));
    return v.toBool();
}

int RecordJson::toInt(const QJsonObject& object, const QString& key, const QString& record, int min, int max)
{
    const QJsonValue v = value(object, key, record);
    const double number = v.toDouble();
    if (!v.isDouble() || std::floor(number) != number || number < min || number > max)
        throw wrongType(key, record, QStringLiteral("an integer from %1 to %2").arg(min).arg(max));
    return int(number);
}

quint64 RecordJson::toUInt64(const QJsonObject& object, const QString& key, const QString& record, quint64 max)
{
    const QJsonValue v = value(object, key, record);
    bool ok = false;
    const quint64 number = v.toString().toULongLong(&ok);
    if (!v.isString() || !ok || number > max)
        throw wrongType(key, record, QStringLiteral("a decimal text up to %1").arg(max));
    return number;
}

QDateTime RecordJson::toDateTime(const QJsonObject& object, const QString& key, const QString& record)
{
    const QString text = toString(object, key, record);
    if (text.isEmpty())
        return QDateTime();
    QDateTime moment = QDateTime::fromString(text, DateTimeFormat);
    if (!moment.isValid())
        throw wrongType(key, record, QStringLiteral("a UTC date and time"));
    moment.setTimeSpec(Qt::UTC);
    return moment;
}

QString RecordJson::toBase64(const QJsonObject& object, const QString& key, const QString& record)
{
    const QString text = toString(object, key, record);
    const auto decoded = QByteArray::fromBase64Encoding(text.toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded || decoded.decoded.toBase64() != text.toLatin1())
        throw wrongType(key, record, QStringLiteral("Base64"));
    return text;
}

} // namespace NVB::Info
