#include "duratondelegate.h"

#include "core/timeduraton.h"

namespace NVB::GUI {

QString DuratonDelegate::toText(const QVariant& value, const QLocale&)
{
    if (value.isNull())
        return notAvailable();
    return NVL::Utitlity::TimeDuraton::toString(value.toInt());
}

QString DuratonDelegate::text(const QVariant& value, const QLocale& locale) const
{
    return toText(value, locale);
}

} // namespace NVB::GUI
