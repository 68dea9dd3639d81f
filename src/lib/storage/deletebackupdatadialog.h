#pragma once

#include <QDialog>
#include <QList>
#include <QSharedPointer>
#include <QString>
#include <QUuid>

#include "records/repository/generation.h"
#include "service/v2/command.h"
#include "service/v2/notificationsubscriber.h"

class QCheckBox;
class QDialogButtonBox;
class QLabel;
class QTreeWidget;

namespace NVB::GUI {

// Deletes one generation, or with a null generation id a whole bunch, from
// backup storage. It shows what goes and how much space that frees, wants the
// confirmation ticked, and closes only when the engine reports the outcome:
// accepted when the data is gone, rejected when the engine refused.
class DeleteBackupDataDialog : public QDialog, public NVB::Common::Communication::V2::NotificationSubscriber
{
    Q_OBJECT

public:
    DeleteBackupDataDialog(
        const QUuid& connectionId, const QUuid& bunchId, const QUuid& generationId, QWidget* parent = nullptr);
    ~DeleteBackupDataDialog() override;

    bool handleNotificationEvent(NVB::Common::Communication::V2::NotificationEvent* event) override;

    QTreeWidget* tree() const { return m_tree; }
    QCheckBox* confirmBox() const { return m_confirm; }
    QDialogButtonBox* buttonBox() const { return m_buttons; }
    QLabel* totalLabel() const { return m_total; }

private slots:
    void onDeleteBackupData();
    void onExecRemove();
    void onLoadConnectionInfo();
    void onLoadBunchFromConnection();
    void onLoadGenerationsFromBunch();

private:
    using Generations = QList<QSharedPointer<NVB::Info::Repository::Generation>>;
    using Command = NVB::Common::Communication::V2::Command;

    void loadConnectionInfo();
    void loadBunchFromConnection();
    void loadGenerationsFromBunch();
    // Sends a query and calls `finished` with it on any outcome.
    void sendQuery(const QUuid& commandId, const QSharedPointer<Command::Request>& request,
        void (DeleteBackupDataDialog::*finished)());
    // The command that ended, checked: throws the text to log on failure and
    // schedules `retry` when the engine asks for one.
    Command* finishedCommand(void (DeleteBackupDataDialog::*retry)());
    void insertItems(const Generations& list);

    QUuid m_connectionId;
    QUuid m_bunchId;
    QUuid m_generationId;
    QString m_connectionName;
    int m_connectionType = 0;
    QString m_bunchName;
    QTreeWidget* m_tree;
    QLabel* m_total;
    QCheckBox* m_confirm;
    QDialogButtonBox* m_buttons;
};

} // namespace NVB::GUI
