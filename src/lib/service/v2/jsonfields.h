#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <QSharedPointer>
#include <QString>
#include <QStringList>
#include <QUuid>

#include "service/progress/iprogressitem.h"
#include "service/progress/progressmanagerdata.h"

// Typed reads and writes of the V2 JSON forms. Every read leaves the target
// as it is when the key is missing (or null) and answers false when the value
// has another type, so a reply that lacks a key reads as an empty value while
// a reply with a wrong value is refused as a whole.
namespace NVB::Common::Communication::V2::Json {

bool parseObject(const QByteArray& bytes, QJsonObject& object);

bool readUuid(const QJsonObject& object, const QString& key, QUuid& target);
bool readInt(const QJsonObject& object, const QString& key, int& target);
bool readString(const QJsonObject& object, const QString& key, QString& target);
bool readDateTime(const QJsonObject& object, const QString& key, QDateTime& target);
bool readStringList(const QJsonObject& object, const QString& key, QStringList& target);
bool readArray(const QJsonObject& object, const QString& key, QJsonArray& target);
bool readObject(const QJsonObject& object, const QString& key, QJsonObject& target);
bool readProgressData(
    const QJsonObject& object, const QString& key, QSharedPointer<NVB::System::Progress::ProgressManagerData>& target);
bool readProgressItems(
    const QJsonObject& object, const QString& key, QList<QSharedPointer<NVB::System::Progress::IProgressItem>>& target);

// ISO 8601 in UTC with milliseconds; an invalid date gives an empty text.
QString fromDateTime(const QDateTime& value);
QJsonValue fromProgressData(const QSharedPointer<NVB::System::Progress::ProgressManagerData>& value);
QJsonArray fromProgressItems(const QList<QSharedPointer<NVB::System::Progress::IProgressItem>>& value);

} // namespace NVB::Common::Communication::V2::Json
