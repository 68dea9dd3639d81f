#include "jsonfields.h"

#include <cmath>

#include <QJsonDocument>
#include <QJsonParseError>

#include "service/progress/progressitem.h"

namespace NVB::Common::Communication::V2::Json {

namespace {
bool absent(const QJsonValue& value)
{
    return value.isUndefined() || value.isNull();
}
} // namespace

bool parseObject(const QByteArray& bytes, QJsonObject& object)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject())
        return false;
    object = document.object();
    return true;
}

bool readUuid(const QJsonObject& object, const QString& key, QUuid& target)
{
    const QJsonValue value = object.value(key);
    if (absent(value))
        return true;
    if (!value.isString())
        return false;
    const QString text = value.toString();
    const QUuid id(text);
    if (id.isNull() && !text.isEmpty() && text != QUuid().toString())
        return false;
    target = id;
    return true;
}

bool readInt(const QJsonObject& object, const QString& key, int& target)
{
    const QJsonValue value = object.value(key);
    if (absent(value))
        return true;
    if (!value.isDouble())
        return false;
    const double number = value.toDouble();
    if (std::floor(number) != number || number < double(INT_MIN) || number > double(INT_MAX))
        return false;
    target = int(number);
    return true;
}

bool readString(const QJsonObject& object, const QString& key, QString& target)
{
    const QJsonValue value = object.value(key);
    if (absent(value))
        return true;
    if (!value.isString())
        return false;
    target = value.toString();
    return true;
}

bool readDateTime(const QJsonObject& object, const QString& key, QDateTime& target)
{
    const QJsonValue value = object.value(key);
    if (absent(value))
        return true;
    if (!value.isString())
        return false;
    const QString text = value.toString();
    if (text.isEmpty()) {
        target = QDateTime();
        return true;
    }
    const QDateTime date = QDateTime::fromString(text, Qt::ISODateWithMs);
    if (!date.isValid())
        return false;
    target = date;
    return true;
}

bool readStringList(const QJsonObject& object, const QString& key, QStringList& target)
{
    const QJsonValue value = object.value(key);
    if (absent(value))
        return true;
    if (!value.isArray())
        return false;
    QStringList list;
    for (const QJsonValue& item : value.toArray()) {
        if (!item.isString())
            return false;
        list.append(item.toString());
    }
    target = list;
    return true;
}

bool readArray(const QJsonObject& object, const QString& key, QJsonArray& target)
{
    const QJsonValue value = object.value(key);
    if (absent(value))
        return true;
    if (!value.isArray())
        return false;
    target = value.toArray();
    return true;
}

bool readObject(const QJsonObject& object, const QString& key, QJsonObject& target)
{
    const QJsonValue value = object.value(key);
    if (absent(value))
        return true;
    if (!value.isObject())
        return false;
    target = value.toObject();
    return true;
}

bool readProgressData(
    const QJsonObject& object, const QString& key, QSharedPointer<NVB::System::Progress::ProgressManagerData>& target)
{
    const QJsonValue value = object.value(key);
    if (absent(value))
        return true;
    if (!value.isObject())
        return false;
    auto data = NVB::System::Progress::ProgressManagerData::fromJson(value.toObject());
    if (!data)
        return false;
    target = data;
    return true;
}

bool readProgressItems(
    const QJsonObject& object, const QString& key, QList<QSharedPointer<NVB::System::Progress::IProgressItem>>& target)
{
    const QJsonValue value = object.value(key);
    if (absent(value))
        return true;
    if (!value.isArray())
        return false;
    QList<QSharedPointer<NVB::System::Progress::IProgressItem>> items;
    for (const QJsonValue& entry : value.toArray()) {
        if (!entry.isObject())
            return false;
        auto item = NVB::System::Progress::ProgressItem::fromJson(entry.toObject());
        if (!item)
            return false;
        items.append(item);
    }
    target = items;
    return true;
}

QString fromDateTime(const QDateTime& value)
{
    return value.isValid() ? value.toUTC().toString(Qt::ISODateWithMs) : QString();
}

QJsonValue fromProgressData(const QSharedPointer<NVB::System::Progress::ProgressManagerData>& value)
{
    return value ? QJsonValue(value->toJson()) : QJsonValue(QJsonValue::Null);
}

QJsonArray fromProgressItems(const QList<QSharedPointer<NVB::System::Progress::IProgressItem>>& value)
{
    QJsonArray array;
    for (const auto& item : value)
        if (item)
            array.append(item->toJson());
    return array;
}

} // namespace NVB::Common::Communication::V2::Json
