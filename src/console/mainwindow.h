#pragma once

#include <QMainWindow>
#include <QUuid>

class QAction;
class QLabel;
class QTabWidget;

namespace NVB::GUI {
class PlanControlObject;
}

namespace NVB::Console {

class BackupDataDeleter;
class DisksPanel;
class HistoryPanel;
class PlanListView;
class PlanProgressPanel;

// The console's window: backup plans, restore plans and storage accounts in
// tabs, a toolbar for the chosen plan, and a status line with the engine's
// connection and the progress of running plans.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit MainWindow(QWidget* parent = nullptr);

    PlanListView* backupPlans() const { return m_backupPlans; }
    PlanListView* restorePlans() const { return m_restorePlans; }
    NVB::GUI::PlanControlObject* control() const { return m_control; }
    PlanProgressPanel* progressPanel() const { return m_progressPanel; }
    HistoryPanel* historyPanel() const { return m_historyPanel; }
    DisksPanel* disksPanel() const { return m_disks; }

public slots:
    void onEngineConnected();
    void onEngineDisconnected();
    void onUpdateStarted();
    void showStatusMessage(const QString& text);

    void onNewBackupPlan();
    void onEditPlan();
    void onRunOrStop();
    void onDeletePlan();
    // Restores the selected disk image plan's newest image.
    void onRestoreImage();
    // Deletes a generation of the selected backup plan from its storage.
    void onDeleteBackupData();

private slots:
    void onCurrentPlanChanged(const QUuid& id, int subtype);
    void onPlanStatusChanged(int status, int subType);
    void onProgress(const QUuid& id, const QMap<QString, QVariant>& message);
    void onControlError(const QString& text);

private:
    void buildToolBar();
    void openEditor(const QUuid& planId);
    PlanListView* currentList() const;

    QTabWidget* m_tabs;
    PlanListView* m_backupPlans;
    PlanListView* m_restorePlans;
    NVB::GUI::PlanControlObject* m_control;
    QAction* m_newAction = nullptr;
    QAction* m_editAction = nullptr;
    QAction* m_runAction = nullptr;
    QAction* m_deleteAction = nullptr;
    QAction* m_restoreImageAction = nullptr;
    QAction* m_deleteDataAction = nullptr;
    BackupDataDeleter* m_dataDeleter = nullptr;
    PlanProgressPanel* m_progressPanel;
    HistoryPanel* m_historyPanel;
    DisksPanel* m_disks = nullptr;
    QLabel* m_connection;
    QLabel* m_progress;
    QUuid m_pendingEdit;
};

} // namespace NVB::Console
