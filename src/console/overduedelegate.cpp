#include "overduedelegate.h"

#include <QDateTime>

#include "stores/defaultsettings.h"

namespace NVB::Console {

int OverdueDelegate::thresholdDays()
{
    bool ok = false;
    const auto* settings = NVB::DefaultSettings::instance();
    const int days = settings ? settings->value(QStringLiteral("PlanOverdueDays")).toInt(&ok) : 0;
    return ok && days > 0 ? days : 7;
}

bool OverdueDelegate::isOverdue(const QDateTime& lastRunUtc, const QDateTime& nowUtc, int days)
{
    return lastRunUtc.isValid() && lastRunUtc.addDays(days) < nowUtc;
}

void OverdueDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const
{
    LocalTimeDelegate::initStyleOption(option, index);
    if (isOverdue(index.data().toDateTime(), QDateTime::currentDateTimeUtc(), thresholdDays())) {
        option->text += QLatin1Char(' ') + tr("(overdue)");
        option->palette.setColor(QPalette::Text, Qt::red);
        option->palette.setColor(QPalette::HighlightedText, Qt::red);
    }
}

} // namespace NVB::Console
