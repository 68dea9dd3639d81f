#include "plans/plantablemodel.h"

#include <QDateTime>
#include <QIcon>
#include <QJsonArray>
#include <QJsonObject>
#include <QLocale>
#include <QPointer>
#include <QScopedPointer>
#include <QSet>

#include "app/icons/iconmanager.h"
#include "core/nvldebug.h"
#include "models/models.h"
#include "plans/plancommand.h"
#include "service/commandresult.h"
#include "service/commands/plan.h"
#include "service/icommand.h"
#include "service/notification/format.h"
#include "service/notification/iparser.h"
#include "service/notification/parserfactory.h"
#include "service/notificationcenter.h"

namespace NVB::GUI {

using namespace NVB::Common::Communication;
namespace PlanFormat = Commands::Format::Plan;
namespace Info = Commands::Format::Plan::DataType::Info;
namespace PlanNotification = Notification::Format::Plan;
namespace Column = Models::Table::NvbPlanModelInfo::Column;
namespace Name = Models::Table::NvbPlanModelInfo::Name;

namespace {

constexpr int LastColumn = Column::Count - 1;
constexpr int BackupJob = 1;
constexpr int RestoreJob = 2;
constexpr int Running = 1;

QString key(const char* text)
{
    return QString::fromLatin1(text);
}

// The summary keeps the engine's values, except that the id is held in one
// textual form so that a match on column 0 finds it whatever case the engine
// wrote it in.
QMap<QString, QVariant> summaryOf(const QJsonObject& object, QUuid* id)
{
    QMap<QString, QVariant> summary = object.toVariantMap();
    *id = QUuid(summary.value(key(Info::ID)).toString());
    summary.insert(key(Info::ID), id->toString());
    return summary;
}

} // namespace

const QMap<int, QString> PlanTableModel::KEY {
    {Column::ID, key(Info::ID)},
    {Column::Name, key(Info::Name)},
    {Column::SubType, key(Info::SubType)},
    {Column::Shedule, key(Info::Schedule)},
    {Column::Status, key(Info::Status)},
    {Column::StorageID, key(Info::StorageId)},
    {Column::LastRunMessage, key(Info::LastRunMessage)},
    {Column::LastRunStatus, key(Info::LastRunStatus)},
    {Column::LastRunTime, key(Info::LastRunTime)},
    {Column::NextRunTime, key(Info::NextRun)},
    {Column::LastDuration, key(Info::LastDuration)},
    {Column::LastUploadedCount, key(Info::LastUploadedCount)},
    {Column::LastFailedCount, key(Info::LastFailedCount)},
    {Column::LastUploadedSize, key(Info::LastUploadedSize)},
    {Column::Type, key(Info::Type)},
    {Column::ProgressSteps, key(Info::ProgressSteps)},
};

namespace {

// KEY by position: data() is asked once per painted cell and sorted row.
const QVector<QString>& keys()
{
    static const QVector<QString> byColumn = [] {
        QVector<QString> result(Column::ProgressSteps + 1);
        for (auto it = PlanTableModel::KEY.constBegin(); it != PlanTableModel::KEY.constEnd(); ++it)
            result[it.key()] = it.value();
        return result;
    }();
    return byColumn;
}

} // namespace

PlanTableModel::PlanTableModel(QObject* parent)
    : BaseModel(parent)
{
    if (QPointer<NotificationCenter> center = NotificationCenter::instance(); !center.isNull())
        connect(center, &NotificationCenter::notification, this, &PlanTableModel::onNotification);
}

PlanTableModel::~PlanTableModel() = default;

QModelIndex PlanTableModel::index(int row, int column, const QModelIndex& parent) const
{
    // ProgressSteps lies behind Count on purpose and is read by its number,
    // so that one extra column is reachable although no view shows it.
    if (parent.isValid() || row < 0 || column < 0 || row >= m_order.size() || column > Column::ProgressSteps)
        return {};
    return createIndex(row, column);
}

QModelIndex PlanTableModel::parent(const QModelIndex&) const
{
    return {};
}

int PlanTableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_order.size();
}

int PlanTableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : Column::Count;
}

Qt::ItemFlags PlanTableModel::flags(const QModelIndex& index) const
{
    if (!index.isValid())
        return BaseModel::flags(index);
    return BaseModel::flags(index) | Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsEditable;
}

QVariant PlanTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return BaseModel::headerData(section, orientation, role);
    // The storage column shows an id, never a name, so it has no header here.
    switch (section) {
    case Column::ID:
        return Name::ID;
    case Column::Name:
        return Name::Name;
    case Column::SubType:
        return Name::SubType;
    case Column::Shedule:
        return Name::Shedule;
    case Column::Status:
        return Name::Status;
    case Column::LastRunMessage:
        return Name::LastRunMessage;
    case Column::LastRunStatus:
        return Name::LastRunStatus;
    case Column::LastRunTime:
        return Name::LastRunTime;
    case Column::NextRunTime:
        return Name::NextRunTime;
    case Column::LastDuration:
        return Name::LastDuration;
    case Column::LastUploadedCount:
        return Name::LastUploadedCount;
    case Column::LastFailedCount:
        return Name::LastFailedCount;
    case Column::LastUploadedSize:
        return Name::LastUploadedSize;
    case Column::Type:
        return Name::Type;
    default:
        return {};
    }
}

QVariant PlanTableModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= m_order.size())
        return {};
    const auto found = m_plans.constFind(m_order.at(index.row()));
    if (found == m_plans.constEnd())
        return {};
    const QMap<QString, QVariant>& summary = *found;

    if (role == Qt::DisplayRole) {
        switch (index.column()) {
        case Column::LastRunTime: {
            // A date value in UTC for the date delegate to show.
            const QString text = summary.value(keys().at(Column::LastRunTime)).toString();
            if (text.isEmpty())
                return {};
            QDateTime time = QDateTime::fromString(text, Qt::ISODate);
            if (!time.isValid())
                return {};
            time.setTimeSpec(Qt::UTC);
            return time;
        }
        case Column::NextRunTime: {
            // Finished local text: this column has no delegate of its own.
            const QString text = summary.value(keys().at(Column::NextRunTime)).toString();
            if (text.isEmpty())
                return {};
            const QDateTime time = QDateTime::fromString(text, Qt::ISODate);
            if (!time.isValid())
                return {};
            return QLocale::system().toString(time.toLocalTime(), QLocale::ShortFormat);
        }
        default:
            return summary.value(keys().at(index.column()));
        }
    }

    if (role == Qt::DecorationRole && index.column() == Column::Name) {
        const int subType = summary.value(keys().at(Column::SubType)).toInt();
        const int status = summary.value(keys().at(Column::Status)).toInt();
        if (subType == BackupJob && status == Running)
            return IconManager::icon(IconManager::BackupPlanRunning);
        if (subType == RestoreJob && status == Running)
            return IconManager::icon(IconManager::RestorePlanRunning);
        if (subType == BackupJob || subType == RestoreJob)
            return palnStatusIcon(subType, summary.value(keys().at(Column::LastRunStatus)).toInt());
        return {};
    }
    return {};
}

QIcon PlanTableModel::palnStatusIcon(int subType, const NVB::Info::Plan::PlanResult& result)
{
    using NVB::Info::Plan::PlanResult;
    const bool backup = subType == BackupJob;
    switch (result.value()) {
    case PlanResult::Success:
        return IconManager::icon(backup ? IconManager::BackupPlanSuccess : IconManager::RestorePlanSuccess);
    case PlanResult::Warning:
        return IconManager::icon(backup ? IconManager::BackupPlanWarning : IconManager::RestorePlanWarning);
    case PlanResult::Failed:
        return IconManager::icon(backup ? IconManager::BackupPlanFailed : IconManager::RestorePlanFailed);
    default:
        return IconManager::icon(backup ? IconManager::BackupPlan : IconManager::RestorePlan);
    }
}

bool PlanTableModel::init()
{
    emit updated();
    sendRequest(QLatin1String(PlanFormat::GetList::Name),
        {{QLatin1String(PlanFormat::GetList::Request::Profile), PlanCommand::profile()}},
        &PlanTableModel::onGetListResult);
    return true;
}

void PlanTableModel::loadInfo(const QUuid& id)
{
    emit updated();
    sendRequest(QLatin1String(PlanFormat::GetInfo::Name),
        {{QLatin1String(PlanFormat::GetInfo::Request::Id), id.toString()},
            {QLatin1String(PlanFormat::GetInfo::Request::Profile), PlanCommand::profile()}},
        &PlanTableModel::onGetInfoResult);
}

void PlanTableModel::sendRequest(const QString& name, const QJsonObject& params, void (PlanTableModel::*slot)())
{
    try {
        ICommand* command = PlanCommand::create(name);
        connect(command, &ICommand::complite, this, slot);
        connect(command, &ICommand::error, this, slot);
        connect(command, &ICommand::timeout, this, slot);
        PlanCommand::exec(command, params);
    } catch (const QString& text) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << text;
        emit error(text);
    }
}

void PlanTableModel::onGetListResult()
{
    auto* command = qobject_cast<ICommand*>(sender());
    if (!command)
        return;
    try {
        const QJsonArray list
            = CommandResult::data(command).value(QLatin1String(PlanFormat::GetList::Reply::Key)).toArray();
        // A list that comes again (a second init) refreshes the rows it holds
        // and appends only the plans that are new.
        QVector<QUuid> added;
        QSet<QUuid> seen;
        QVector<int> changed;
        for (const QJsonValue& value : list) {
            QUuid id;
            QMap<QString, QVariant> summary = summaryOf(value.toObject(), &id);
            if (id.isNull()) {
                NVL::NvlDebug(QStringLiteral("NVB")).warning()
                    << QStringLiteral("Plan summary without an id is skipped");
                continue;
            }
            const bool known = m_rows.contains(id);
            m_plans.insert(id, summary);
            if (known)
                changed.append(m_rows.value(id));
            else if (!seen.contains(id)) {
                seen.insert(id);
                added.append(id);
            }
        }
        if (!added.isEmpty()) {
            const int first = m_order.size();
            beginInsertRows(QModelIndex(), first, first + added.size() - 1);
            for (const QUuid& id : qAsConst(added)) {
                m_rows.insert(id, m_order.size());
                m_order.append(id);
            }
            endInsertRows();
        }
        for (int row : qAsConst(changed))
            emitRowChanged(row);
        emit complite();
    } catch (const QString& text) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << text;
        emit error(text);
    }
    command->deleteLater();
}

void PlanTableModel::onGetInfoResult()
{
    auto* command = qobject_cast<ICommand*>(sender());
    if (!command)
        return;
    try {
        const QJsonObject object
            = CommandResult::data(command).value(QLatin1String(PlanFormat::GetInfo::Reply::Key)).toObject();
        if (!object.isEmpty()) {
            QUuid id;
            const QMap<QString, QVariant> summary = summaryOf(object, &id);
            if (id.isNull())
                throw QStringLiteral("Plan summary without an id");
            const int row = rowOf(id);
            m_plans.insert(id, summary);
            if (row >= 0) {
                emitRowChanged(row);
            } else {
                const int last = m_order.size();
                beginInsertRows(QModelIndex(), last, last);
                m_rows.insert(id, last);
                m_order.append(id);
                endInsertRows();
            }
        }
        emit complite();
    } catch (const QString& text) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << text;
        emit error(text);
    }
    command->deleteLater();
}

void PlanTableModel::onNotification(const QJsonDocument& document)
{
    QScopedPointer<Notification::IParser> parser(Notification::ParserFactory::instance().create(document));
    if (!parser) {
        NVL::NvlDebug(QStringLiteral("NVB")).debug() << QStringLiteral("Notiifcation is 0x00");
        return;
    }
    const QUuid type = parser->type();
    if (type == PlanNotification::Add::Type) {
        loadInfo(QUuid(parser->message().value(QLatin1String(PlanNotification::Add::Id)).toString()));
    } else if (type == PlanNotification::Update::Type) {
        loadInfo(QUuid(parser->message().value(QLatin1String(PlanNotification::Update::Id)).toString()));
    } else if (type == PlanNotification::Remove::Type) {
        removePlan(QUuid(parser->message().value(QLatin1String(PlanNotification::Remove::Id)).toString()));
    } else if (type == PlanNotification::StateChange::Type) {
        const QMap<QString, QVariant> message = parser->message();
        changeState(QUuid(message.value(QLatin1String(PlanNotification::StateChange::Id)).toString()),
            message.value(QLatin1String(PlanNotification::StateChange::State)).toInt());
    }
}

void PlanTableModel::removePlan(const QUuid& id)
{
    const int row = rowOf(id);
    if (row < 0)
        return;
    beginRemoveRows(QModelIndex(), row, row);
    m_order.remove(row);
    m_plans.remove(id);
    m_rows.remove(id);
    for (int i = row; i < m_order.size(); ++i)
        m_rows.insert(m_order.at(i), i);
    endRemoveRows();
}

void PlanTableModel::changeState(const QUuid& id, int state)
{
    const int row = rowOf(id);
    if (row < 0)
        return;
    // The state shows at once; the summary that follows brings the rest.
    m_plans[id].insert(KEY.value(Column::Status), state);
    emitRowChanged(row);
    loadInfo(id);
}

int PlanTableModel::rowOf(const QUuid& id) const
{
    return m_rows.value(id, -1);
}

void PlanTableModel::emitRowChanged(int row)
{
    emit dataChanged(index(row, 0), index(row, LastColumn), {});
}

} // namespace NVB::GUI
