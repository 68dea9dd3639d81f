#include "plans/planeditwait.h"

#include <QAbstractItemModel>
#include <QHBoxLayout>
#include <QJsonObject>
#include <QKeyEvent>
#include <QLabel>

#include "core/nvldebug.h"
#include "models/modelmanager.h"
#include "models/models.h"
#include "plans/plancommand.h"
#include "plans/planxmllist.h"
#include "service/commandresult.h"
#include "service/commands/plan.h"
#include "service/icommand.h"
#include "widgets/progresswheel.h"

namespace NVB::GUI {

using namespace NVB::Common::Communication;
namespace PlanFormat = Commands::Format::Plan;
namespace Column = Models::Table::NvbPlanModelInfo::Column;

PlanEditWait::PlanEditWait(bool isEdit, QWidget* parent)
    : QDialog(parent,
        Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint
            | Qt::WindowMinMaxButtonsHint)
    , m_edit(isEdit)
{
    setWindowTitle(tr("Wait plan edit result"));
    auto* layout = new QHBoxLayout(this);
    auto* wheel = new ProgressWheel(this);
    auto* label = new QLabel(this);
    label->setObjectName(QStringLiteral("message"));
    layout->addWidget(wheel);
    layout->addWidget(label, 1);
    connect(this, &PlanEditWait::startWait, wheel, &ProgressWheel::startAnimate);
    connect(this, &PlanEditWait::stopWait, wheel, &ProgressWheel::stopAnimate);
    connect(this, &PlanEditWait::setMessage, label, &QLabel::setText);
    wheel->startAnimate();
}

void PlanEditWait::setPlan(const QUuid& id, const QString& xml, bool run)
{
    try {
        m_planId = id;
        m_run = run;
        if (QPointer<PlanXmlList> list = PlanXmlList::instance(); !list.isNull())
            list->setLastCreatedPlan(id);

        // The reply to the save only says that the engine took the command;
        // the table's own report says that the plan is there.
        if (QPointer<ModelManager> manager = ModelManager::instance(); !manager.isNull())
            m_table = manager->create(Models::Table::NvbPlanModelInfo::Type);
        if (!m_table.isNull()) {
            if (m_edit)
                connect(m_table, &QAbstractItemModel::dataChanged, this, &PlanEditWait::onDataChanged);
            else
                connect(m_table, &QAbstractItemModel::rowsInserted, this, &PlanEditWait::onRowsInserted);
        }

        ICommand* command = PlanCommand::create(QLatin1String(PlanFormat::Update::Name));
        PlanCommand::setParams(command,
            {{QLatin1String(PlanFormat::Update::Request::Profile), PlanCommand::profile()},
                {QLatin1String(PlanFormat::Update::Request::XML), xml},
                {QLatin1String(PlanFormat::Update::Request::ID), id.toString()}});
        execCommand(command);
        emit startWait();
        emit setMessage(tr("Exec edit plan command..."));
        exec();
    } catch (const QString& text) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << text;
    }
}

void PlanEditWait::execCommand(ICommand* command)
{
    if (!command)
        return;
    connect(command, &ICommand::complite, this, &PlanEditWait::onCommandResult);
    connect(command, &ICommand::error, this, &PlanEditWait::onCommandResult);
    connect(command, &ICommand::timeout, this, &PlanEditWait::onCommandResult);
    command->exec();
}

void PlanEditWait::runPlan()
{
    if (!m_run) {
        accept();
        return;
    }
    emit setMessage(tr("Running plan..."));
    try {
        ICommand* command = PlanCommand::create(QLatin1String(PlanFormat::ExecuteStart::Name));
        PlanCommand::setParams(command,
            {{QLatin1String(PlanFormat::ExecuteStart::Request::ID), m_planId.toString()},
                {QLatin1String(PlanFormat::ExecuteStart::Request::Profile), PlanCommand::profile()}});
        execCommand(command);
    } catch (const QString& text) {
        qWarning("%s", qUtf8Printable(text));
    }
}

void PlanEditWait::onCommandResult()
{
    auto* command = qobject_cast<ICommand*>(sender());
    if (!command)
        return;
    try {
        if (command->isError() || !command->isComplite() || !command->reply().isObject())
            throw tr("Local command reply format error");
        CommandResult::data(command);
        if (command->name() == QLatin1String(PlanFormat::Update::Name)) {
            // The saved plan may have reached the table already; then the
            // dialog has moved on and there is nothing left to say.
            if (!m_reported)
                emit setMessage(tr("Wait command result..."));
        } else if (command->name() == QLatin1String(PlanFormat::ExecuteStart::Name)) {
            accept();
        }
    } catch (const QString& text) {
        // The wheel keeps turning: only the table's report ends the wait.
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << text;
    }
    command->deleteLater();
}

void PlanEditWait::onRowsInserted(const QModelIndex& parent, int first, int last)
{
    const auto* model = qobject_cast<const QAbstractItemModel*>(sender());
    if (!model || parent.isValid())
        return;
    for (int row = first; row <= last; ++row) {
        if (isPlanRow(model, row)) {
            disconnect(m_table, &QAbstractItemModel::rowsInserted, this, &PlanEditWait::onRowsInserted);
            m_reported = true;
            runPlan();
            return;
        }
    }
}

void PlanEditWait::onDataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight, const QVector<int>&)
{
    const auto* model = qobject_cast<const QAbstractItemModel*>(sender());
    if (!model || !topLeft.isValid() || !bottomRight.isValid())
        return;
    for (int row = topLeft.row(); row <= bottomRight.row(); ++row) {
        if (isPlanRow(model, row)) {
            // Later changes of the same plan (its state once it runs) must
            // not start it again.
            disconnect(m_table, &QAbstractItemModel::dataChanged, this, &PlanEditWait::onDataChanged);
            m_reported = true;
            runPlan();
            return;
        }
    }
}

void PlanEditWait::keyPressEvent(QKeyEvent* event)
{
    // The wait can't be left by keyboard: the plan is being saved either way.
    if (event->key() == Qt::Key_Escape) {
        event->accept();
        return;
    }
    QDialog::keyPressEvent(event);
}

bool PlanEditWait::isPlanRow(const QAbstractItemModel* model, int row) const
{
    return QUuid(model->index(row, Column::ID).data(Qt::DisplayRole).toString()) == m_planId;
}

} // namespace NVB::GUI
