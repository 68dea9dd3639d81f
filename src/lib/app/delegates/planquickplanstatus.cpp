#include "planquickplanstatus.h"

namespace NVB::GUI {

QString PlanQuickPlanStatus::toText(const QVariant& value, const QLocale&)
{
    return codeText(value, "NVB::GUI::PlanQuickPlanStatus", {{1, QT_TRANSLATE_NOOP("NVB::GUI::PlanQuickPlanStatus", "Run")}, {2, QT_TRANSLATE_NOOP("NVB::GUI::PlanQuickPlanStatus", "Stop")}});
}

QString PlanQuickPlanStatus::text(const QVariant& value, const QLocale& locale) const
{
    return toText(value, locale);
}

QIcon PlanQuickPlanStatus::toIcon(const QVariant& value)
{
    bool ok = false;
    const int code = value.toInt(&ok);
    if (ok && code == 1)
        return QIcon(QStringLiteral("://images/plan_state_start.png"));
    if (ok && code == 2)
        return QIcon(QStringLiteral("://images/plan_state_no.png"));
    return {};
}

QIcon PlanQuickPlanStatus::icon(const QVariant& value) const
{
    return toIcon(value);
}

} // namespace NVB::GUI
