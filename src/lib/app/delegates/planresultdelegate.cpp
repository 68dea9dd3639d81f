#include "planresultdelegate.h"

#include "records/plan/planresult.h"

namespace NVB::GUI {

using NVB::Info::Plan::PlanResult;

QString PlanResultDelegate::toText(const QVariant& value, const QLocale&)
{
    if (value.isNull() || PlanResult(value.toInt()) == PlanResult(-1))
        return notAvailable();
    return PlanResult(value.toInt()).displayName();
}

QColor PlanResultDelegate::color(const QVariant& value)
{
    if (!value.isValid())
        return {};
    switch (PlanResult(value.toInt()).value()) {
    case 8:
        return Qt::red;
    case 5:
    case 7:
        return Qt::darkYellow;
    case 2:
    case 6:
        return Qt::darkGreen;
    case 9:
    case 10:
    case 100:
    case 101:
    case 102:
        return Qt::blue;
    default:
        return Qt::black;
    }
}

QString PlanResultDelegate::text(const QVariant& value, const QLocale& locale) const
{
    return toText(value, locale);
}

QColor PlanResultDelegate::textColor(const QVariant& value) const
{
    return color(value);
}

} // namespace NVB::GUI
