#pragma once

#include <QDialog>
#include <QHash>
#include <QStringList>
#include <QUuid>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTreeView;

namespace NVB::GUI {
class DiskInfoModel;
class DiskInfoRestoreModel;
} // namespace NVB::GUI

namespace NVB::Console {

// Restores a disk image plan's newest image: the volumes the image holds,
// each onto a volume or blank disk of this machine chosen for it. The target
// box edits the target of the volume selected in the tree (or of the first
// chosen one). Accepting saves one restore plan for all of them and starts
// it; the engine restores each volume and names every one that failed.
class RestoreImageDialog : public QDialog
{
    Q_OBJECT

public:
    RestoreImageDialog(
        const QUuid& backupPlanId, const QUuid& storageId, const QString& planName, QWidget* parent = nullptr);

    NVB::GUI::DiskInfoRestoreModel* imageModel() const { return m_image; }
    QTreeView* imageView() const { return m_view; }
    QComboBox* targetBox() const { return m_target; }
    QLineEdit* passwordEdit() const { return m_password; }
    QPushButton* restoreButton() const { return m_restore; }
    QLabel* messageLabel() const { return m_message; }
    // The saved restore plan's id once accepted.
    QUuid restorePlanId() const { return m_restorePlanId; }

private:
    struct Chosen
    {
        QUuid volume;
        QString name;
    };

    void fillTargets();
    // The volumes ticked in the image, in the tree's order.
    QList<Chosen> chosenVolumes() const;
    // The volume the target box edits: the selected one when it is ticked,
    // else the first ticked one.
    Chosen editedVolume() const;
    void showEditedTarget();
    void onTargetChosen(int index);
    void updateButton();
    void restore();

    QUuid m_backupPlanId;
    QUuid m_storageId;
    QString m_planName;
    NVB::GUI::DiskInfoRestoreModel* m_image;
    NVB::GUI::DiskInfoModel* m_machine;
    QTreeView* m_view;
    QLabel* m_targetLabel;
    QComboBox* m_target;
    QLabel* m_assignments;
    QLineEdit* m_password;
    QLabel* m_message;
    QPushButton* m_restore;
    // Source volume id: its target as {disk id, volume id or empty}.
    QHash<QUuid, QStringList> m_targets;
    QUuid m_restorePlanId;
};

} // namespace NVB::Console
