#include "historyquery.h"

namespace NVB::Engine {

QDateTime HistoryQuery::since(const QDateTime& nowUtc) const
{
    switch (period) {
    case Period::DayLast: return nowUtc.addDays(-1);
    case Period::WeekLast: return nowUtc.addDays(-7);
    case Period::MonthLast: return nowUtc.addMonths(-1);
    case Period::All: break;
    }
    return {};
}

bool HistoryQuery::periodFromText(const QString& text, Period* result)
{
    static const struct { const char* text; Period period; } periods[] = {
        {"All", Period::All}, {"DayLast", Period::DayLast}, {"WeekLast", Period::WeekLast},
        {"MonthLast", Period::MonthLast}};
    if (text.isEmpty()) {
        *result = Period::All;
        return true;
    }
    for (const auto& entry : periods) {
        if (text == QLatin1String(entry.text)) {
            *result = entry.period;
            return true;
        }
    }
    return false;
}

} // namespace NVB::Engine
