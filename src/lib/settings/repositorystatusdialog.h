#pragma once

#include <QDialog>
#include <QPointer>

class QAbstractItemModel;
class QComboBox;
class QLabel;
class QListWidget;
class QPushButton;

namespace NVB::GUI {

class ProgressWheel;

namespace SynchronizeRepositoryStatus {
class Process;
}

namespace Settings {

// The repository status dialog: the user picks a storage, starts the
// engine's synchronisation of its repository and follows it line by line
// until it ends, fails or is cancelled. Closing the dialog leaves a
// synchronisation under way to the engine.
class RepositoryStatusDialog : public QDialog
{
    Q_OBJECT
public:
    // `connections` is the storage connection model; the dialog lists its
    // rows.
    explicit RepositoryStatusDialog(QAbstractItemModel* connections, QWidget* parent = nullptr);

    QComboBox* storageBox() const { return m_storage; }
    QPushButton* synchronizeButton() const { return m_synchronize; }
    QPushButton* cancelButton() const { return m_cancel; }
    QLabel* stateLabel() const { return m_state; }
    QListWidget* statusList() const { return m_log; }
    bool isRunning() const;

public slots:
    void onSynchronizeClicked();
    void onCancelClicked();

private slots:
    void onStarted();
    void onStatus(const QString& message);
    void onError(const QString& message);
    void onFinished();
    void onConnectionsChanged();

private:
    void setBusy(bool busy);

    QAbstractItemModel* m_connections;
    QComboBox* m_storage;
    QPushButton* m_synchronize;
    QPushButton* m_cancel;
    QLabel* m_state;
    QListWidget* m_log;
    ProgressWheel* m_wheel;
    QPointer<SynchronizeRepositoryStatus::Process> m_process;
    bool m_failed = false;
};

} // namespace Settings
} // namespace NVB::GUI
