#include "datetimedelegate.h"

#include <QDateTime>
#include <QLocale>

namespace NVB::GUI {

QString DateTimeDelegate::toText(const QVariant& value, const QLocale&)
{
    // The engine's stamps are always UTC.
    QDateTime stamp = QDateTime::fromString(value.toString(), QStringLiteral("yyyyMMddhhmmss"));
    if (!stamp.isValid())
        return notAvailable();
    stamp.setTimeSpec(Qt::UTC);
    // The system locale's short format, as Qt::SystemLocaleShortDate gave it.
    return QLocale::system().toString(stamp.toLocalTime(), QLocale::ShortFormat);
}

QString DateTimeDelegate::text(const QVariant& value, const QLocale& locale) const
{
    return toText(value, locale);
}

} // namespace NVB::GUI
