#include "truefalsedelegate.h"

namespace NVB::GUI {

QString TrueFalseDelegate::toText(const QVariant& value, const QLocale&)
{
    return codeText(value, "NVB::GUI::TrueFalseDelegate", {{0, QT_TRANSLATE_NOOP("NVB::GUI::TrueFalseDelegate", "no")}, {1, QT_TRANSLATE_NOOP("NVB::GUI::TrueFalseDelegate", "yes")}});
}

QString TrueFalseDelegate::text(const QVariant& value, const QLocale& locale) const
{
    return toText(value, locale);
}

} // namespace NVB::GUI
