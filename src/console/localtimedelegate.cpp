#include "localtimedelegate.h"

#include <QDateTime>

namespace NVB::Console {

QString LocalTimeDelegate::displayText(const QVariant& value, const QLocale& locale) const
{
    const QDateTime stamp = value.toDateTime();
    if (!stamp.isValid())
        return QString();
    return locale.toString(stamp.toLocalTime(), QLocale::ShortFormat);
}

} // namespace NVB::Console
