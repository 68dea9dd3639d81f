#include "doubletopercentdelegate.h"

namespace NVB::GUI {

QString DoubleToPercentDelegate::toText(const QVariant& value, const QLocale&)
{
    bool ok = false;
    const double fraction = value.toDouble(&ok);
    if (!ok || fraction < 0.0 || fraction > 1.0)
        return notAvailable();
    return QString::number(fraction * 100, 'i', 0) + QLatin1Char('%');
}

QString DoubleToPercentDelegate::text(const QVariant& value, const QLocale& locale) const
{
    return toText(value, locale);
}

} // namespace NVB::GUI
