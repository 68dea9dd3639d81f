#include "plantypedelegate.h"

namespace NVB::GUI {

QString PlanTypeDelegate::toText(const QVariant& value, const QLocale&)
{
    return codeText(value, "NVB::GUI::PlanTypeDelegate", {{1, QT_TRANSLATE_NOOP("NVB::GUI::PlanTypeDelegate", "Backup")}, {2, QT_TRANSLATE_NOOP("NVB::GUI::PlanTypeDelegate", "Restore")}});
}

QString PlanTypeDelegate::text(const QVariant& value, const QLocale& locale) const
{
    return toText(value, locale);
}

QIcon PlanTypeDelegate::toIcon(const QVariant& value)
{
    bool ok = false;
    const int code = value.toInt(&ok);
    if (ok && code == 1)
        return QIcon(QStringLiteral("://images/backup.png"));
    if (ok && code == 2)
        return QIcon(QStringLiteral("://images/restore.png"));
    return {};
}

QIcon PlanTypeDelegate::icon(const QVariant& value) const
{
    return toIcon(value);
}

} // namespace NVB::GUI
