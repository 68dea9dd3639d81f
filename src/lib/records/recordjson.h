#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <QString>
#include <QUuid>

namespace NVB::Info {

// Field grammar of the JSON form of the repository and connection records.
// Readers throw a QString naming the record and key; fromJson() of each record
// catches it, logs it and answers null. Unknown keys are ignored.
// 64-bit sizes travel as decimal strings, since a JSON number is a double.
class RecordJson
{
public:
    static QString fromUuid(const QUuid& id);
    static QString fromDateTime(const QDateTime& moment);
    static QString fromUInt64(quint64 value);

    static QUuid toUuid(const QJsonObject& object, const QString& key, const QString& record);
    static QString toString(const QJsonObject& object, const QString& key, const QString& record);
    static bool toBool(const QJsonObject& object, const QString& key, const QString& record);
    static int toInt(const QJsonObject& object, const QString& key, const QString& record, int min, int max);
    static quint64 toUInt64(
        const QJsonObject& object, const QString& key, const QString& record, quint64 max = ~quint64(0));
    // Empty text is the invalid moment.
    static QDateTime toDateTime(const QJsonObject& object, const QString& key, const QString& record);
    static QString toBase64(const QJsonObject& object, const QString& key, const QString& record);
};

} // namespace NVB::Info
