#include "mainwindow.h"

#include <QAction>
#include <QDockWidget>
#include <QLabel>
#include <QMessageBox>
#include <QStatusBar>
#include <QTabWidget>
#include <QToolBar>

#include "accounts/storages.h"
#include "app/application.h"
#include "app/icons/iconmanager.h"
#include "backupdatadeleter.h"
#include "diskspanel.h"
#include "historypanel.h"
#include "models/models.h"
#include "mailserverdialog.h"
#include "masterpasswordgate.h"
#include "models/modelmanager.h"
#include "planlistview.h"
#include "planprogresspanel.h"
#include "records/plan/planenums.h"
#include "restoreimagedialog.h"
#include "plans/planbackupmodel.h"
#include "plans/plancontrolobject.h"
#include "plans/planrestoremodel.h"
#include "plans/planstatuslist.h"
#include "plans/planxmllist.h"
#include "service/notification/format.h"
#include "settings/repositorystatusdialog.h"
#include "settings/retentionpolicy.h"
#include "settings/settingdialog.h"
#include "settings/settingsimpledialog.h"
#include "wizards/backup/backupplaneditwizard.h"
#include "wizards/backup/trynewbackupformatdialog.h"

namespace NVB::Console {

namespace Progress = NVB::Common::Communication::Notification::Format::Worker::ReportProgress;

MainWindow::MainWindow(QWidget* parent)
    : QMainWindow(parent)
    , m_tabs(new QTabWidget(this))
    , m_backupPlans(new PlanListView(new NVB::GUI::PlanBackupModel, 1))
    , m_restorePlans(new PlanListView(new NVB::GUI::PlanRestoreModel, 2))
    , m_control(new NVB::GUI::PlanControlObject(this))
    , m_progressPanel(new PlanProgressPanel(this))
    , m_historyPanel(new HistoryPanel(this))
    , m_connection(new QLabel(this))
    , m_progress(new QLabel(this))
{
    setWindowTitle(NVB::GUI::Application::applicationName());
    resize(1100, 640);

    m_tabs->addTab(m_backupPlans, tr("Backup plans"));
    m_tabs->addTab(m_restorePlans, tr("Restore plans"));
    m_tabs->addTab(new NVB::GUI::Settings::Storages(this), tr("Storage"));
    m_disks = new DisksPanel(this);
    m_tabs->addTab(m_disks, tr("Disks"));
    setCentralWidget(m_tabs);
    buildToolBar();
    // What the chosen plan is doing and what it did, below the tables.
    auto* details = new QTabWidget(this);
    details->addTab(m_progressPanel, tr("Progress"));
    details->addTab(m_historyPanel, tr("History"));
    auto* dock = new QDockWidget(tr("Plan details"), this);
    dock->setObjectName(QStringLiteral("planDetails"));
    dock->setFeatures(QDockWidget::DockWidgetMovable);
    dock->setWidget(details);
    addDockWidget(Qt::BottomDockWidgetArea, dock);

    m_progress->setTextFormat(Qt::PlainText);
    statusBar()->addWidget(m_connection);
    statusBar()->addWidget(m_progress, 1);
    onEngineDisconnected();

    for (PlanListView* list : {m_backupPlans, m_restorePlans}) {
        connect(list, &PlanListView::currentPlanChanged, this, &MainWindow::onCurrentPlanChanged);
        connect(list, &PlanListView::planActivated, this, [this](const QUuid& id) { openEditor(id); });
    }
    connect(m_tabs, &QTabWidget::currentChanged, this, [this] {
        const PlanListView* list = currentList();
        onCurrentPlanChanged(list ? list->currentPlan() : QUuid(), list ? list->subtype() : 0);
    });
    connect(m_control, &NVB::GUI::PlanControlObject::statusChanged, this, &MainWindow::onPlanStatusChanged);
    connect(m_control, &NVB::GUI::PlanControlObject::updatedError, this, &MainWindow::onControlError);
    if (const auto statuses = NVB::GUI::PlanStatusList::instance())
        connect(statuses, &NVB::GUI::PlanStatusList::updated, this, &MainWindow::onProgress);
    if (const auto plans = NVB::GUI::PlanXmlList::instance()) {
        // An edit waits for the plan's XML when the cache does not hold it.
        connect(plans, &NVB::GUI::PlanXmlList::complite, this, [this](const QUuid& id) {
            if (id == m_pendingEdit) {
                m_pendingEdit = QUuid();
                openEditor(id);
            }
        });
    }
    onCurrentPlanChanged(QUuid(), 0);
}

void MainWindow::buildToolBar()
{
    QToolBar* bar = addToolBar(tr("Plans"));
    bar->setObjectName(QStringLiteral("plans"));
    bar->setMovable(false);
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_newAction = bar->addAction(QIcon(QStringLiteral(":/images/add.svg")), tr("New backup plan"), this,
                                 &MainWindow::onNewBackupPlan);
    m_editAction = bar->addAction(QIcon(QStringLiteral(":/images/edit.svg")), tr("Edit"), this, &MainWindow::onEditPlan);
    m_runAction = bar->addAction(QIcon(QStringLiteral(":/images/plan_state_start.png")), tr("Run"), this,
                                 &MainWindow::onRunOrStop);
    m_deleteAction = bar->addAction(QIcon(QStringLiteral(":/images/error.svg")), tr("Delete"), this,
                                    &MainWindow::onDeletePlan);
    m_newAction->setObjectName(QStringLiteral("newPlan"));
    m_editAction->setObjectName(QStringLiteral("editPlan"));
    m_runAction->setObjectName(QStringLiteral("runPlan"));
    m_deleteAction->setObjectName(QStringLiteral("deletePlan"));
    m_restoreImageAction = bar->addAction(tr("Restore image"), this, &MainWindow::onRestoreImage);
    m_restoreImageAction->setObjectName(QStringLiteral("restoreImage"));
    m_restoreImageAction->setEnabled(false);
    m_deleteDataAction = bar->addAction(tr("Delete backup data..."), this, &MainWindow::onDeleteBackupData);
    m_deleteDataAction->setObjectName(QStringLiteral("deleteBackupData"));
    m_deleteDataAction->setEnabled(false);
    m_dataDeleter = new BackupDataDeleter(this);
    // The legacy format's default retention, which plans on "Use default"
    // follow; written through as it is changed.
    QAction* retention = bar->addAction(tr("Retention policy"), this, [this] {
        NVB::GUI::SettingSimpleDialog dialog(this);
        dialog.setWidget(new NVB::GUI::Settings::RetentionPolicy(&dialog));
        dialog.exec();
    });
    retention->setObjectName(QStringLiteral("retentionPolicy"));
    // Where plan notification mail goes out.
    QAction* mail = bar->addAction(tr("Mail server"), this, [this] { MailServerDialog(this).exec(); });
    mail->setObjectName(QStringLiteral("mailServer"));
    // Every setting of the product; behind the master password when one is
    // set, since the dialog can change or remove it.
    QAction* settings = bar->addAction(QIcon(QStringLiteral(":/images/settings.svg")), tr("Settings"), this, [this] {
        if (!MasterPasswordGate::unlock(this))
            return;
        NVB::GUI::SettingDialog dialog(this);
        dialog.exec();
    });
    settings->setObjectName(QStringLiteral("settings"));
    // Reading a storage back into the repository: after a reinstall, or
    // when backups were deleted on the storage itself.
    QAction* synchronize = bar->addAction(tr("Synchronize repository"), this, [this] {
        const auto models = NVB::GUI::ModelManager::instance();
        NVB::GUI::Settings::RepositoryStatusDialog dialog(
            models ? models->create(NVB::GUI::Models::Table::NvbStorageConnectionModelInfo::Type) : nullptr, this);
        dialog.exec();
    });
    synchronize->setObjectName(QStringLiteral("synchronizeRepository"));
}

PlanListView* MainWindow::currentList() const
{
    return qobject_cast<PlanListView*>(m_tabs->currentWidget());
}

void MainWindow::onCurrentPlanChanged(const QUuid& id, int subtype)
{
    m_control->setCurrentPlan(id, subtype);
    m_progressPanel->setPlan(id, subtype);
    m_historyPanel->setPlan(id);
    const bool chosen = !id.isNull();
    m_editAction->setEnabled(chosen && subtype == 1);
    m_runAction->setEnabled(chosen);
    m_deleteAction->setEnabled(chosen);
    m_restoreImageAction->setEnabled(chosen && subtype == 1);
    m_deleteDataAction->setEnabled(chosen && subtype == 1);
}

void MainWindow::onPlanStatusChanged(int status, int)
{
    // 1 running: the button stops; otherwise it starts.
    const bool running = status == 1;
    m_runAction->setText(running ? tr("Stop") : tr("Run"));
    m_runAction->setIcon(QIcon(running ? QStringLiteral(":/images/plan_state_no.png")
                                       : QStringLiteral(":/images/plan_state_start.png")));
}

void MainWindow::onEngineConnected()
{
    m_disks->reload();
    m_connection->setText(tr("Engine: connected"));
    m_connection->setStyleSheet(QString());
}

void MainWindow::onEngineDisconnected()
{
    m_connection->setText(tr("Engine: not connected"));
    m_connection->setStyleSheet(QStringLiteral("color: #c62828;"));
}

void MainWindow::onUpdateStarted()
{
    showStatusMessage(tr("The engine is being updated; the console reconnects when it is back."));
}

void MainWindow::showStatusMessage(const QString& text)
{
    statusBar()->showMessage(text, 10000);
}

void MainWindow::onProgress(const QUuid&, const QMap<QString, QVariant>& message)
{
    const QString file = message.value(QLatin1String(Progress::CurrentFileValue)).toString();
    m_progress->setText(QStringLiteral("%1 %2, %3, %4")
                            .arg(message.value(QLatin1String(Progress::StatusValue)).toString(),
                                 message.value(QLatin1String(Progress::FilesCopiedValue)).toString(),
                                 message.value(QLatin1String(Progress::Size)).toString(),
                                 message.value(QLatin1String(Progress::Elapsed)).toString()));
    m_progress->setToolTip(file);
}

void MainWindow::onControlError(const QString& text)
{
    QMessageBox::warning(this, windowTitle(), text);
}

void MainWindow::onNewBackupPlan()
{
    // The engine performs both formats; the user picks one per plan.
    using NVB::GUI::TryNewBackupFormatDialog;
    TryNewBackupFormatDialog format(this);
    const int choice = format.exec();
    if (choice != TryNewBackupFormatDialog::NewFormat && choice != TryNewBackupFormatDialog::CurrentFormat)
        return;
    auto* wizard = new NVB::GUI::BackupPlanEditWizard(choice == TryNewBackupFormatDialog::NewFormat, this);
    // Files or whole volumes: the first page asks.
    wizard->addBackupTypePage();
    wizard->setAttribute(Qt::WA_DeleteOnClose);
    wizard->open();
}

void MainWindow::onEditPlan()
{
    if (const PlanListView* list = currentList())
        openEditor(list->currentPlan());
}

void MainWindow::openEditor(const QUuid& planId)
{
    const auto plans = NVB::GUI::PlanXmlList::instance();
    if (planId.isNull() || !plans)
        return;
    NVB::Info::Plan::Base* plan = plans->plan(planId);
    if (!plan) {
        m_pendingEdit = planId;
        plans->getPlan(planId);
        return;
    }
    if (plan->subtype() != 1)
        return;
    NVB::GUI::BackupPlanEditWizard* wizard = NVB::GUI::BackupPlanEditWizard::createWizard(plan, this);
    if (!wizard)
        return;
    wizard->setAttribute(Qt::WA_DeleteOnClose);
    wizard->open();
}

void MainWindow::onRunOrStop()
{
    m_control->onChangePlanStatus();
}

void MainWindow::onRestoreImage()
{
    const PlanListView* list = currentList();
    const auto plans = NVB::GUI::PlanXmlList::instance();
    if (!list || list->currentPlan().isNull() || !plans)
        return;
    const NVB::Info::Plan::Base* plan = plans->plan(list->currentPlan());
    if (!plan || plan->type() != int(NVB::Info::Plan::SubType::DiskImage)) {
        QMessageBox::information(this, tr("Restore image"), tr("Choose a disk image backup plan to restore from."));
        return;
    }
    auto* dialog = new RestoreImageDialog(plan->id(), plan->storage(), plan->name(), this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

void MainWindow::onDeleteBackupData()
{
    namespace Column = NVB::GUI::Models::Table::NvbPlanBackupModelInfo::Column;
    const PlanListView* list = currentList();
    if (list != m_backupPlans || list->currentPlan().isNull())
        return;
    const int row = list->currentIndex().row();
    const QUuid storage(list->model()->index(row, Column::StorageID).data().toString());
    if (storage.isNull()) {
        QMessageBox::information(this, tr("Delete backup data"), tr("The plan has no storage yet."));
        return;
    }
    m_dataDeleter->start(storage, list->currentPlan(), list->model()->index(row, Column::Name).data().toString());
}

void MainWindow::onDeletePlan()
{
    const PlanListView* list = currentList();
    if (!list || list->currentPlan().isNull())
        return;
    const QString name = list->model()->index(list->currentIndex().row(), 1).data().toString();
    const auto answer = QMessageBox::question(this, tr("Delete plan"),
                                              tr("Delete the plan \"%1\"? Its backup data stays in storage.").arg(name));
    if (answer == QMessageBox::Yes)
        m_control->onRemove();
}

} // namespace NVB::Console
