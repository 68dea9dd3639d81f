#include "historygetbyplanmodel.h"

#include <QColor>
#include <QDateTime>
#include <QIcon>

#include "models/models.h"
#include "plans/plancommand.h"
#include "plans/plantablemodel.h"
#include "records/plan/planresult.h"
#include "service/commands/history.h"
#include "service/history/exportascsv.h"

namespace NVB::GUI {

namespace ByPlan = NVB::Common::Communication::Commands::Format::History::ByPlan;
namespace Info = Models::Table::HistoryGetByPlanModelInfo;

namespace {

const QString StampFormat = QStringLiteral("yyyyMMddhhmmss");

QVariant resultColour(int result)
{
    switch (result) {
    case 8:
    case 10:
        return QColor(Qt::red);
    case 5:
    case 7:
        return QColor(Qt::darkYellow);
    case 2:
    case 6:
        return QColor(Qt::darkGreen);
    case 9:
    case 11:
    case 12:
    case 13:
        return QColor(Qt::blue);
    default:
        return {};
    }
}

} // namespace

HistoryGetByPlanModel::HistoryGetByPlanModel(QObject* parent)
    : HistoryTableModel(parent)
{
    setObjectName(Info::Type);
}

int HistoryGetByPlanModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : Info::Column::Count;
}

QVariant HistoryGetByPlanModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    const QString* names[] = {&Info::Name::PlanName, &Info::Name::Files, &Info::Name::Size, &Info::Name::Result,
        &Info::Name::StartTime, &Info::Name::Duration, &Info::Name::FinishTime, &Info::Name::ErrorMessage};
    return section >= 0 && section < Info::Column::Count ? QVariant(*names[section]) : QVariant();
}

QVariant HistoryGetByPlanModel::finishTime(const QMap<QString, QVariant>& row)
{
    if (row.value(QLatin1String(ByPlan::Reply::Result)).toInt() == 2)
        return {};
    QDateTime start
        = QDateTime::fromString(row.value(QLatin1String(ByPlan::Reply::StartTimeUTC)).toString(), StampFormat);
    if (!start.isValid())
        return {};
    // The stamps are UTC; counted as such the arithmetic knows no daylight
    // saving jumps.
    start.setTimeSpec(Qt::UTC);
    return start.addSecs(row.value(QLatin1String(ByPlan::Reply::Duration)).toLongLong()).toString(StampFormat);
}

QVariant HistoryGetByPlanModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() < 0 || index.row() >= m_rows.size())
        return {};
    const QMap<QString, QVariant>& row = m_rows.at(index.row());
    const auto value = [&row](const char* key) { return row.value(QLatin1String(key)); };
    switch (role) {
    case Qt::TextAlignmentRole:
        if (index.column() == 1 || index.column() == 2)
            return -1;
        if (index.column() == 3)
            return int(Qt::AlignHCenter | Qt::AlignVCenter);
        return {};
    case Qt::ForegroundRole:
        return index.column() == Info::Column::Result ? resultColour(value(ByPlan::Reply::Result).toInt()) : QVariant();
    case Qt::DecorationRole:
        if (index.column() != 0)
            return {};
        return PlanTableModel::palnStatusIcon(value(ByPlan::Reply::Operation).toInt() == 0 ? 1 : 2,
            NVB::Info::Plan::PlanResult(value(ByPlan::Reply::Result).toInt()));
    case Qt::DisplayRole:
        switch (index.column()) {
        case Info::Column::PlanName:
            return value(ByPlan::Reply::PlanName);
        case Info::Column::Files:
            return value(ByPlan::Reply::FileOperationsTotalCount);
        case Info::Column::Size:
            return value(ByPlan::Reply::Size);
        case Info::Column::Result:
            return value(ByPlan::Reply::Result).toInt();
        case Info::Column::StartTime:
            return value(ByPlan::Reply::StartTimeUTC);
        case Info::Column::Duration:
            return value(ByPlan::Reply::Duration);
        case Info::Column::FinishTime:
            return finishTime(row);
        case Info::Column::ErrorMessage:
            return value(ByPlan::Reply::ErrorMessage);
        default:
            return {};
        }
    default:
        return {};
    }
}

void HistoryGetByPlanModel::load(int period, const QUuid& planId)
{
    load(period, planId, 0);
}

void HistoryGetByPlanModel::load(int period, const QUuid& planId, int lastId)
{
    request(period, planId, 0, lastId, false);
}

void HistoryGetByPlanModel::issuePlanExport(int period, const QUuid& planId, int lastId)
{
    request(period, planId, 0, lastId, true);
}

QString HistoryGetByPlanModel::commandName() const
{
    return QLatin1String(ByPlan::Name);
}

QJsonObject HistoryGetByPlanModel::arguments(int period, const QUuid& planId, int, int lastId, bool csv) const
{
    QJsonObject params {{QLatin1String(ByPlan::Request::Filter), QString()},
        {QLatin1String(ByPlan::Request::LastID), lastId}, {QLatin1String(ByPlan::Request::Period), periodText(period)},
        // Without braces, unlike every other id of the channel.
        {QLatin1String(ByPlan::Request::PlanID), planId.toString().mid(1, 36)},
        {QLatin1String(ByPlan::Request::Profile), PlanCommand::profile()}};
    if (csv)
        params.insert(QLatin1String(ByPlan::Request::GenerateCSV), true);
    return params;
}

const char* HistoryGetByPlanModel::replyKey() const
{
    return ByPlan::Reply::Key;
}

const char* HistoryGetByPlanModel::idKey() const
{
    return ByPlan::Reply::DbID;
}

const char* HistoryGetByPlanModel::csvKey() const
{
    return ByPlan::Reply::CSVLine;
}

QString HistoryGetByPlanModel::managerMissingText() const
{
    return QStringLiteral("Commnunication manager  not exist");
}

QString HistoryGetByPlanModel::commandMissingText() const
{
    return QStringLiteral("Commnunication command not registered");
}

void HistoryGetByPlanModel::emitExportReady(const QSharedPointer<QTemporaryFile>& file)
{
    emit savePlanReady(file);
}

QSharedPointer<QTemporaryFile> HistoryGetByPlanModel::prepareExport(const QStringList& lines) const
{
    return NVB::Common::History::ExportAsCSV::preparePlanExport(lines);
}

} // namespace NVB::GUI
