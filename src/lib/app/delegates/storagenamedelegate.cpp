#include "storagenamedelegate.h"

namespace NVB::GUI {

QString StorageNameDelegate::toText(const QVariant& value, const QLocale&)
{
    // Names come from the shared storage connection model; until the library
    // has that model no id can be resolved.
    Q_UNUSED(value)
    return tr("Unknown");
}

QString StorageNameDelegate::text(const QVariant& value, const QLocale& locale) const
{
    return toText(value, locale);
}

} // namespace NVB::GUI
