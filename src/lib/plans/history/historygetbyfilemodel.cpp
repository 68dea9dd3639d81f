#include "historygetbyfilemodel.h"

#include <QColor>
#include <QIcon>

#include "app/icons/iconmanager.h"
#include "models/models.h"
#include "plans/plancommand.h"
#include "plans/plantablemodel.h"
#include "records/plan/planresult.h"
#include "service/channelerrors.h"
#include "service/commands/history.h"
#include "service/history/exportascsv.h"

namespace NVB::GUI {

namespace ByFiles = NVB::Common::Communication::Commands::Format::History::ByFiles;
namespace Info = Models::Table::HistoryGetByFileModelInfo;
using NVB::Info::Plan::PlanResult;

namespace {

// The engine's file operations: 1 copied, 2 restored, 3 failed, 4 skipped,
// 5 a restore point or generation that retention removed.
enum Operation { Copied = 1, Restored = 2, Failed = 3, Skipped = 4, Removed = 5 };

const char* operationName(int operation)
{
    switch (operation) {
    case Copied:
        return QT_TRANSLATE_NOOP("NVB::GUI::HistoryGetByFileModel", "Copied");
    case Restored:
        return QT_TRANSLATE_NOOP("NVB::GUI::HistoryGetByFileModel", "Restored");
    case Failed:
        return QT_TRANSLATE_NOOP("NVB::GUI::HistoryGetByFileModel", "Failed");
    case Skipped:
        return QT_TRANSLATE_NOOP("NVB::GUI::HistoryGetByFileModel", "Skipped");
    case Removed:
        return QT_TRANSLATE_NOOP("NVB::GUI::HistoryGetByFileModel", "Removed");
    default:
        return nullptr;
    }
}

PlanResult::Value resultOf(int operation, const QString& message)
{
    if (operation == Failed)
        return PlanResult::Failed;
    if (operation == Skipped || !message.isEmpty())
        return PlanResult::Warning;
    return PlanResult::Success;
}

} // namespace

HistoryGetByFileModel::HistoryGetByFileModel(QObject* parent)
    : HistoryTableModel(parent)
{
    setObjectName(Info::Type);
}

int HistoryGetByFileModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : Info::Column::Count;
}

QVariant HistoryGetByFileModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    const QString* names[] = {&Info::Name::Operation, &Info::Name::PlanName, &Info::Name::File, &Info::Name::Size,
        &Info::Name::FinishTime, &Info::Name::Duration, &Info::Name::DateModified, &Info::Name::Message};
    return section >= 0 && section < Info::Column::Count ? QVariant(*names[section]) : QVariant();
}

QVariant HistoryGetByFileModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() < 0 || index.row() >= m_rows.size())
        return {};
    const QMap<QString, QVariant>& row = m_rows.at(index.row());
    const auto value = [&row](const char* key) { return row.value(QLatin1String(key)); };
    const int operation = value(ByFiles::Reply::Operation).toInt();
    const PlanResult::Value result = resultOf(operation, value(ByFiles::Reply::Message).toString());
    switch (role) {
    case Qt::TextAlignmentRole:
        return index.column() == 3 ? QVariant(int(Qt::AlignHCenter | Qt::AlignVCenter)) : QVariant();
    case Qt::ForegroundRole:
        if (index.column() != Info::Column::Operation && index.column() != Info::Column::Message)
            return {};
        // A removal the policy asked for is neither a copy that worked nor a
        // problem: it gets the colour of the runs' informational results.
        if (operation == Removed && result == PlanResult::Success)
            return QColor(Qt::blue);
        if (result == PlanResult::Failed)
            return QColor(Qt::red);
        return result == PlanResult::Warning ? QColor(Qt::darkYellow) : QColor(Qt::darkGreen);
    case Qt::DecorationRole:
        if (index.column() != 0)
            return {};
        // Retention took a point away: the image of an empty restore point
        // says that better than a backup's.
        if (operation == Removed)
            return IconManager::resource(QStringLiteral("restore-point-empty.svg"));
        return PlanTableModel::palnStatusIcon(operation == Restored ? 2 : 1, PlanResult(result));
    case Qt::ToolTipRole:
        if (index.column() != Info::Column::Operation || !operationName(operation))
            return {};
        return tr(operationName(operation));
    case Qt::DisplayRole:
        switch (index.column()) {
        case Info::Column::Operation:
            return operation;
        case Info::Column::PlanName:
            return value(ByFiles::Reply::PlanName);
        case Info::Column::File:
            return value(ByFiles::Reply::File);
        case Info::Column::Size:
            return value(ByFiles::Reply::Size);
        case Info::Column::FinishTime:
            return value(ByFiles::Reply::FinishTime);
        case Info::Column::Duration:
            return value(ByFiles::Reply::Duration);
        case Info::Column::DateModified:
            return value(ByFiles::Reply::DateModified);
        case Info::Column::Message:
            return value(ByFiles::Reply::Message);
        default:
            return {};
        }
    default:
        return {};
    }
}

void HistoryGetByFileModel::load(int period, const QUuid& planId, int type)
{
    load(period, planId, type, 0);
}

void HistoryGetByFileModel::load(int period, const QUuid& planId, int type, int lastId)
{
    request(period, planId, type, lastId, false);
}

void HistoryGetByFileModel::issueFileExport(int period, const QUuid& planId, int type, int lastId)
{
    request(period, planId, type, lastId, true);
}

QString HistoryGetByFileModel::commandName() const
{
    return QLatin1String(ByFiles::Name);
}

QJsonObject HistoryGetByFileModel::arguments(int period, const QUuid& planId, int type, int lastId, bool csv) const
{
    QJsonObject params {{QLatin1String(ByFiles::Request::Filter), QString()},
        {QLatin1String(ByFiles::Request::FilterOperationType::Key), type},
        {QLatin1String(ByFiles::Request::LastId), lastId},
        {QLatin1String(ByFiles::Request::Period), periodText(period)},
        {QLatin1String(ByFiles::Request::PlanId), planId.toString().mid(1, 36)},
        {QLatin1String(ByFiles::Request::Profile), PlanCommand::profile()}};
    if (csv)
        params.insert(QLatin1String(ByFiles::Request::GenerateCSV), true);
    return params;
}

const char* HistoryGetByFileModel::replyKey() const
{
    return ByFiles::Reply::Key;
}

const char* HistoryGetByFileModel::idKey() const
{
    return ByFiles::Reply::ID;
}

const char* HistoryGetByFileModel::csvKey() const
{
    return ByFiles::Reply::CSVLine;
}

QString HistoryGetByFileModel::managerMissingText() const
{
    return QString::fromLatin1(NVB::Common::Communication::Errors::ManagerMissing);
}

QString HistoryGetByFileModel::commandMissingText() const
{
    return QString::fromLatin1(NVB::Common::Communication::Errors::CommandNotRegistered);
}

void HistoryGetByFileModel::emitExportReady(const QSharedPointer<QTemporaryFile>& file)
{
    emit saveFileReady(file);
}

QSharedPointer<QTemporaryFile> HistoryGetByFileModel::prepareExport(const QStringList& lines) const
{
    return NVB::Common::History::ExportAsCSV::prepareFileExport(lines);
}

} // namespace NVB::GUI
