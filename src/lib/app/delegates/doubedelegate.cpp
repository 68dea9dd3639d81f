#include "doubedelegate.h"

namespace NVB::GUI {

QString DoubeDelegate::toText(const QVariant& value, const QLocale&)
{
    bool ok = false;
    const double number = value.toDouble(&ok);
    if (!ok || number < 0)
        return notAvailable();
    return QString::number(number, 'f', 2);
}

QString DoubeDelegate::text(const QVariant& value, const QLocale& locale) const
{
    return toText(value, locale);
}

} // namespace NVB::GUI
