#include "xmlstringdelegate.h"

namespace NVB::GUI {

QString XmlStringDelegate::toText(const QVariant& value, const QLocale&)
{
    const QString text = value.toString();
    if (text.startsWith(QLatin1String("<?xml"), Qt::CaseSensitive))
        return tr("Click to view details");
    return text;
}

QString XmlStringDelegate::text(const QVariant& value, const QLocale& locale) const
{
    return toText(value, locale);
}

} // namespace NVB::GUI
