#include "plans/plancontrolobject.h"

#include <QAbstractItemModel>
#include <QJsonObject>
#include <QWidget>

#include "core/nvldebug.h"
#include "models/modelmanager.h"
#include "models/models.h"
#include "plans/plancommand.h"
#include "service/channelerrors.h"
#include "service/commandresult.h"
#include "service/commands/plan.h"
#include "service/icommand.h"
#include "service/manager.h"

namespace NVB::GUI {

using namespace NVB::Common::Communication;
namespace PlanFormat = Commands::Format::Plan;
namespace Column = Models::Table::NvbPlanModelInfo::Column;

namespace {
constexpr int Running = 1;
constexpr int Idle = 2;
} // namespace

PlanControlObject::PlanControlObject(QWidget* parent)
    : QObject(parent)
{
    if (QAbstractItemModel* table = planTable()) {
        connect(table, &QAbstractItemModel::dataChanged, this, &PlanControlObject::onModelDataChanged);
        connect(table, &QAbstractItemModel::rowsRemoved, this, &PlanControlObject::onPlanRemove);
    }
}

void PlanControlObject::setCurrentPlan(const QUuid& id, int type)
{
    m_planId = id;
    m_planType = type;
    updateWidget();
}

void PlanControlObject::onEdit()
{ }

void PlanControlObject::onRemove()
{
    emit updatedBegin();
    try {
        ICommand* command = PlanCommand::create(QLatin1String(PlanFormat::Remove::Name));
        connect(command, &ICommand::complite, this, &PlanControlObject::onCommandResult);
        connect(command, &ICommand::error, this, &PlanControlObject::onCommandResult);
        connect(command, &ICommand::timeout, this, &PlanControlObject::onCommandResult);
        PlanCommand::exec(command,
            {{QLatin1String(PlanFormat::Remove::Request::ID), m_planId.toString()},
                {QLatin1String(PlanFormat::Remove::Request::Profile), PlanCommand::profile()}});
    } catch (const QString& text) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << text;
        emit updatedError(text);
    }
}

void PlanControlObject::onChangePlanStatus()
{
    onChangePlanStatus(false);
}

void PlanControlObject::onChangePlanStatus(bool forceFull)
{
    emit updatedBegin();
    try {
        if (Manager::instance().isNull())
            throw QString::fromLatin1(Errors::ManagerMissing);
        QAbstractItemModel* table = planTable();
        const int row = table ? findPlan(table) : -1;
        const int status = row >= 0 ? table->index(row, Column::Status).data().toInt() : 0;

        QJsonObject params;
        ICommand* command = nullptr;
        if (status == Running) {
            command = PlanCommand::create(QLatin1String(PlanFormat::ExecuteStop::Name));
            params.insert(QLatin1String(PlanFormat::ExecuteStop::Request::ID), m_planId.toString());
            params.insert(QLatin1String(PlanFormat::ExecuteStop::Request::Profile), PlanCommand::profile());
        } else if (status == Idle) {
            command = PlanCommand::create(QLatin1String(PlanFormat::ExecuteStart::Name));
            params.insert(QLatin1String(PlanFormat::ExecuteStart::Request::ID), m_planId.toString());
            params.insert(QLatin1String(PlanFormat::ExecuteStart::Request::Profile), PlanCommand::profile());
            // The engine reads a missing key as a normal run.
            if (forceFull)
                params.insert(QLatin1String(PlanFormat::ExecuteStart::Request::ForceFull), true);
        }
        // A plan that is stopping, disabled or gone can be neither started
        // nor stopped; the toolbar shows the channel's own text for it.
        if (!command)
            throw QString::fromLatin1(Errors::CommandNotRegistered);
        connect(command, &ICommand::complite, this, &PlanControlObject::onCommandResult);
        connect(command, &ICommand::error, this, &PlanControlObject::onCommandResult);
        connect(command, &ICommand::timeout, this, &PlanControlObject::onCommandResult);
        PlanCommand::exec(command, params);
    } catch (const QString& text) {
        qWarning("%s", qUtf8Printable(text));
        emit updatedError(text);
    }
}

void PlanControlObject::onModelDataChanged()
{
    updateWidget();
}

void PlanControlObject::onCommandResult()
{
    auto* command = qobject_cast<ICommand*>(sender());
    if (!command)
        return;
    try {
        CommandResult::data(command);
        emit updatedComplite();
    } catch (const QString& text) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << text;
        emit updatedError(text);
    }
    command->deleteLater();
}

void PlanControlObject::onPlanRemove()
{
    if (m_planId.isNull())
        return;
    QAbstractItemModel* table = planTable();
    if (table && findPlan(table) >= 0)
        return;
    NVL::NvlDebug(QStringLiteral("NVB")).info() << QStringLiteral("Current plan remove");
    emit removeCurrentPlan(m_planId);
    m_planId = QUuid();
}

void PlanControlObject::updateWidget()
{
    QAbstractItemModel* table = planTable();
    if (!table)
        return;
    const int row = findPlan(table);
    if (row < 0)
        return;
    emit statusChanged(
        table->index(row, Column::Status).data().toInt(), table->index(row, Column::SubType).data().toInt());
}

QAbstractItemModel* PlanControlObject::planTable() const
{
    QPointer<ModelManager> manager = ModelManager::instance();
    return manager.isNull() ? nullptr : manager->create(Models::Table::NvbPlanModelInfo::Type);
}

int PlanControlObject::findPlan(QAbstractItemModel* table) const
{
    if (m_planId.isNull() || table->rowCount() == 0)
        return -1;
    const QModelIndexList found
        = table->match(table->index(0, 0), Qt::DisplayRole, m_planId.toString(), 1, Qt::MatchExactly);
    return found.isEmpty() ? -1 : found.first().row();
}

} // namespace NVB::GUI
