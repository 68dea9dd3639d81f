#include "restoreverificationresultdelegate.h"

namespace NVB::GUI {

QString RestoreVerificationResultDelegate::toText(const QVariant& value, const QLocale&)
{
    return codeText(value, "NVB::GUI::RestoreVerificationResultDelegate", {{1, QT_TRANSLATE_NOOP("NVB::GUI::RestoreVerificationResultDelegate", "Succeed")}, {2, QT_TRANSLATE_NOOP("NVB::GUI::RestoreVerificationResultDelegate", "Warnings")}, {3, QT_TRANSLATE_NOOP("NVB::GUI::RestoreVerificationResultDelegate", "Failed")}});
}

QString RestoreVerificationResultDelegate::text(const QVariant& value, const QLocale& locale) const
{
    return toText(value, locale);
}

} // namespace NVB::GUI
