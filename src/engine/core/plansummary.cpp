#include "plansummary.h"

#include <QLocale>
#include <QStringList>

#include "records/plan/schedule.h"
#include "service/commands/plan.h"

namespace NVB::Engine {

using NVB::Info::Plan::Schedule;
namespace Info = NVB::Common::Communication::Commands::Format::Plan::DataType::Info;

namespace {

QString isoUtc(const QDateTime& utc)
{
    return utc.isValid() ? utc.toUTC().toString(Qt::ISODate) : QString();
}

QString timeText(const QTime& time)
{
    return time.isValid() ? time.toString(QStringLiteral("HH:mm")) : QStringLiteral("00:00");
}

QString daysText(const QBitArray& days)
{
    QStringList names;
    for (int bit = 0; bit < qMin(7, days.size()); ++bit) {
        if (days.testBit(bit))
            names << QLocale::c().dayName(bit + 1, QLocale::ShortFormat);
    }
    return names.join(QStringLiteral(", "));
}

QString whenInDay(const Schedule& schedule)
{
    if (!schedule.dailyRecurrence())
        return QStringLiteral("at %1").arg(timeText(schedule.occursAt()));
    const auto every = schedule.occursEvery();
    return QStringLiteral("every %1 minutes from %2 to %3")
        .arg(every.minutes)
        .arg(timeText(every.from), timeText(every.to));
}

QString monthsText(const Schedule& schedule)
{
    const int months = schedule.monthRepeat().months;
    return months > 1 ? QStringLiteral("every %1 months").arg(months) : QStringLiteral("monthly");
}

} // namespace

QString PlanSummary::describe(const Schedule& schedule)
{
    if (!schedule.isEnable())
        return QStringLiteral("No schedule");
    if (schedule.type() == Schedule::Once) {
        return QStringLiteral("Once at %1")
            .arg(schedule.specificDate().toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH:mm")));
    }
    static const char* const weeks[] = {"first", "second", "third", "fourth", "penultimate", "last"};
    switch (schedule.frequencyType()) {
    case Schedule::Daily:
        return QStringLiteral("Daily %1").arg(whenInDay(schedule));
    case Schedule::Weekly:
        return QStringLiteral("Weekly on %1 %2").arg(daysText(schedule.weeklyFrequency()), whenInDay(schedule));
    case Schedule::Monthly: {
        const auto monthly = schedule.monthlyFrequency();
        return QStringLiteral("%1 on the %2 %3 %4")
            .arg(monthsText(schedule), QLatin1String(weeks[qBound(0, int(monthly.weekNumber), 5)]),
                 QLocale::c().dayName(qBound(1, monthly.day, 7)), whenInDay(schedule));
    }
    case Schedule::DayOfMonth:
        return QStringLiteral("%1 on day %2 %3")
            .arg(monthsText(schedule))
            .arg(schedule.dayOfMonthFrequency())
            .arg(whenInDay(schedule));
    }
    return QStringLiteral("No schedule");
}

QJsonObject PlanSummary::toJson(const StoredPlan& plan, const QDateTime& nextRunUtc, const QString& schedule,
                                const QString& fullSchedule, bool forceFullSupported)
{
    QJsonObject info;
    info.insert(QLatin1String(Info::ID), plan.id.toString());
    info.insert(QLatin1String(Info::Name), plan.name);
    // Crossed on purpose, as the records answer them: "Type" is the kind of
    // content, "SubType" the kind of job.
    info.insert(QLatin1String(Info::Type), plan.type);
    info.insert(QLatin1String(Info::SubType), plan.subtype);
    info.insert(QLatin1String(Info::Status), plan.status);
    info.insert(QLatin1String(Info::StorageId), plan.storageId.isNull() ? QString() : plan.storageId.toString());
    info.insert(QLatin1String(Info::LastRunStatus), plan.lastResult);
    info.insert(QLatin1String(Info::LastRunTime), isoUtc(plan.lastRunUtc));
    info.insert(QLatin1String(Info::LastRunMessage), plan.lastMessage);
    info.insert(QLatin1String(Info::LastDuration), double(plan.lastDuration));
    info.insert(QLatin1String(Info::LastFileCount), double(plan.lastFileCount));
    info.insert(QLatin1String(Info::LastFileSize), double(plan.lastFileSize));
    info.insert(QLatin1String(Info::LastUploadedCount), double(plan.lastUploadedCount));
    info.insert(QLatin1String(Info::LastUploadedSize), double(plan.lastUploadedSize));
    info.insert(QLatin1String(Info::LastFailedCount), double(plan.lastFailedCount));
    info.insert(QLatin1String(Info::NextRun), isoUtc(nextRunUtc));
    info.insert(QLatin1String(Info::NextRunReal), isoUtc(nextRunUtc));
    info.insert(QLatin1String(Info::NextRunFull), QString());
    info.insert(QLatin1String(Info::Schedule), schedule);
    info.insert(QLatin1String(Info::FullSchedule), fullSchedule);
    info.insert(QLatin1String(Info::ForceFullSupported), forceFullSupported);
    // A backup walks its sources, then copies; a restore only copies.
    info.insert(QLatin1String(Info::ProgressSteps), plan.subtype == 1 ? 2 : 1);
    return info;
}

} // namespace NVB::Engine
