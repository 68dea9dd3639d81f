#include "historytablemodel.h"

#include <QJsonArray>

#include "core/nvldebug.h"
#include "plans/plancommand.h"
#include "service/commandresult.h"
#include "service/icommand.h"
#include "service/manager.h"

namespace NVB::GUI {

using namespace NVB::Common::Communication;

HistoryTableModel::HistoryTableModel(QObject* parent)
    : BaseModel(parent)
{
    qRegisterMetaType<QSharedPointer<QTemporaryFile>>();
}

QString HistoryTableModel::periodText(int period)
{
    switch (period) {
    case 1:
        return QStringLiteral("DayLast");
    case 2:
        return QStringLiteral("WeekLast");
    case 3:
        return QStringLiteral("MonthLast");
    default:
        return QStringLiteral("All");
    }
}

QModelIndex HistoryTableModel::index(int row, int column, const QModelIndex& parent) const
{
    if (parent.isValid() || !hasIndex(row, column, parent))
        return {};
    return createIndex(row, column);
}

QModelIndex HistoryTableModel::parent(const QModelIndex&) const
{
    return {};
}

int HistoryTableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_rows.size();
}

Qt::ItemFlags HistoryTableModel::flags(const QModelIndex& index) const
{
    return index.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable : Qt::NoItemFlags;
}

bool HistoryTableModel::canFetchMore(const QModelIndex& parent) const
{
    return !parent.isValid() && m_more;
}

void HistoryTableModel::fetchMore(const QModelIndex& parent)
{
    if (parent.isValid() || m_rows.isEmpty())
        return;
    request(m_period, m_planId, m_type, m_rows.last().value(QLatin1String(idKey())).toInt(), false);
}

ICommand* HistoryTableModel::makeCommand() const
{
    Manager* manager = Manager::instance();
    if (!manager)
        throw managerMissingText();
    ICommand* command = manager->commandFactory(commandName());
    if (!command)
        throw commandMissingText();
    return command;
}

void HistoryTableModel::request(int period, const QUuid& planId, int type, int lastId, bool csv)
{
    try {
        if (!csv) {
            emit updated();
            m_period = period;
            m_planId = planId;
            m_type = type;
            m_more = false;
            if (lastId == 0 && !m_rows.isEmpty()) {
                beginRemoveRows({}, 0, m_rows.size() - 1);
                m_rows.clear();
                endRemoveRows();
            }
        } else {
            m_exportPeriod = period;
            m_exportPlanId = planId;
            m_exportType = type;
        }
        ICommand* command = makeCommand();
        (csv ? m_exportCommand : m_currentCommand) = command->id();
        const auto slot = csv ? &HistoryTableModel::onExportResult : &HistoryTableModel::onResult;
        connect(command, &ICommand::complite, this, slot);
        connect(command, &ICommand::error, this, slot);
        connect(command, &ICommand::timeout, this, slot);
        PlanCommand::exec(command, arguments(period, planId, type, lastId, csv));
    } catch (const QString& text) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << text;
        emit error(text);
    }
}

void HistoryTableModel::onResult()
{
    auto* command = qobject_cast<ICommand*>(sender());
    if (!command)
        return;
    // A reply to a load that a newer one replaced belongs to no one.
    if (command->id() != m_currentCommand) {
        command->deleteLater();
        return;
    }
    try {
        const QJsonArray page = CommandResult::data(command).value(QLatin1String(replyKey())).toArray();
        m_more = !page.isEmpty();
        if (!page.isEmpty()) {
            // Views ask for the new rows only after endInsertRows(); the
            // count must still be the old one at beginInsertRows().
            beginInsertRows({}, m_rows.size(), m_rows.size() + page.size() - 1);
            for (const QJsonValue& value : page)
                m_rows.append(value.toObject().toVariantMap());
            endInsertRows();
        }
        emit complite();
    } catch (const QString& text) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << text;
        emit error(text);
    }
    command->deleteLater();
}

void HistoryTableModel::onExportResult()
{
    auto* command = qobject_cast<ICommand*>(sender());
    if (!command)
        return;
    if (command->id() != m_exportCommand) {
        command->deleteLater();
        return;
    }
    try {
        const QJsonArray page = CommandResult::data(command).value(QLatin1String(replyKey())).toArray();
        for (const QJsonValue& value : page)
            m_exportLines << value.toObject().value(QLatin1String(csvKey())).toString();
        if (page.size() == ExportPageSize) {
            const int lastId = page.last().toObject().value(QLatin1String(idKey())).toInt();
            request(m_exportPeriod, m_exportPlanId, m_exportType, lastId, true);
        } else {
            const auto file = prepareExport(m_exportLines);
            if (!file)
                throw tr("Cannot write the exported history to a temporary file");
            m_exportLines.clear();
            emitExportReady(file);
        }
    } catch (const QString& text) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << text;
        emit error(text);
    }
    command->deleteLater();
}

} // namespace NVB::GUI
