#pragma once

#include <QDateTime>
#include <QString>
#include <QUuid>

namespace NVB::Engine {

// A page of history: rows older than `lastId` (all when 0), newest first.
struct HistoryQuery
{
    enum class Period { All, DayLast, WeekLast, MonthLast };

    QUuid planId; // null: every plan
    Period period = Period::All;
    QString filter; // substring of the plan name, or of the file for file rows
    qint64 lastId = 0;
    int fileOperation = 0; // file rows of this operation only; 0: every operation
    int limit = 100;

    // The earliest start that the period lets through; invalid for All.
    QDateTime since(const QDateTime& nowUtc) const;
    static bool periodFromText(const QString& text, Period* period);
};

} // namespace NVB::Engine
