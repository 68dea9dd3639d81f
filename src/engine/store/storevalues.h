#pragma once

#include <QDateTime>
#include <QString>
#include <QUuid>
#include <QVariant>

namespace NVB::Engine::StoreValues {

// How the store writes the values it keeps: ids with braces (empty for a null
// id), texts never NULL, times as UTC ISO texts with milliseconds.
QString text(const QUuid& id);
QVariant str(const QString& value);
QVariant stamp(const QDateTime& utc);
QDateTime readStamp(const QVariant& value);

// The last point of a content row that still holds in the latest point.
constexpr qint64 OpenEnd = 9223372036854775807;

} // namespace NVB::Engine::StoreValues
