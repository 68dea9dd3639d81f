#include "sizedelegate.h"

#include <limits>

#include "core/transform.h"

namespace NVB::GUI {

bool SizeDelegate::isUnknownSize(const QVariant& value)
{
    constexpr qint64 signedMax = std::numeric_limits<qint64>::max();
    constexpr quint64 unsignedMax = std::numeric_limits<quint64>::max();
    // Compare integers as integers: as doubles, values near the limits round
    // onto them.
    switch (value.userType()) {
    case QMetaType::LongLong:
        return value.toLongLong() == signedMax;
    case QMetaType::ULongLong:
        return value.toULongLong() == unsignedMax || value.toULongLong() == quint64(signedMax);
    default:
        break;
    }
    const double number = value.toDouble();
    return number == double(signedMax) || number == double(unsignedMax);
}

QString SizeDelegate::toText(const QVariant& value, const QLocale&)
{
    bool ok = false;
    const double bytes = value.toDouble(&ok);
    if (!ok || bytes < 0 || isUnknownSize(value))
        return notAvailable();
    return SHARED::functions::help::transform::from_byte_to_norm(bytes);
}

QString SizeDelegate::toText(const QVariant& value, const QString& other)
{
    bool ok = false;
    const double bytes = value.toDouble(&ok);
    if (!ok || isUnknownSize(value))
        return other;
    return SHARED::functions::help::transform::from_byte_to_norm(bytes);
}

QString SizeDelegate::text(const QVariant& value, const QLocale& locale) const
{
    return toText(value, locale);
}

} // namespace NVB::GUI
