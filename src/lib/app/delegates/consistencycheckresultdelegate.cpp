#include "consistencycheckresultdelegate.h"

namespace NVB::GUI {

QString ConsistencyCheckResultDelegate::toText(const QVariant& value, const QLocale&)
{
    return codeText(value, "NVB::GUI::ConsistencyCheckResultDelegate", {{1, QT_TRANSLATE_NOOP("NVB::GUI::ConsistencyCheckResultDelegate", "Successfully")}, {2, QT_TRANSLATE_NOOP("NVB::GUI::ConsistencyCheckResultDelegate", "FilesMissed")}, {3, QT_TRANSLATE_NOOP("NVB::GUI::ConsistencyCheckResultDelegate", "FilesListSizeDidNotMatch")}, {4, QT_TRANSLATE_NOOP("NVB::GUI::ConsistencyCheckResultDelegate", "FilesDatesDidNotMatch")}, {5, QT_TRANSLATE_NOOP("NVB::GUI::ConsistencyCheckResultDelegate", "Forbidden")}});
}

QString ConsistencyCheckResultDelegate::text(const QVariant& value, const QLocale& locale) const
{
    return toText(value, locale);
}

} // namespace NVB::GUI
