#include "counterdelegate.h"

namespace NVB::GUI {

QString CounterDelegate::toText(const QVariant& value, const QLocale&)
{
    bool ok = false;
    const qlonglong number = value.toLongLong(&ok);
    if (!ok || number < 0)
        return notAvailable();
    return QString::number(number, 10);
}

QString CounterDelegate::text(const QVariant& value, const QLocale& locale) const
{
    return toText(value, locale);
}

} // namespace NVB::GUI
