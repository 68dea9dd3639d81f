#pragma once

#include <QDialog>
#include <QUuid>

class QComboBox;
class QLabel;
class QPushButton;
class QTreeView;

namespace NVB::GUI {
class DiskInfoModel;
class DiskInfoRestoreModel;
} // namespace NVB::GUI

namespace NVB::Console {

// Restores a disk image plan's newest image: the volumes the image holds,
// and the volume or blank disk of this machine to write one of them onto.
// Accepting saves a restore plan and starts it.
class RestoreImageDialog : public QDialog
{
    Q_OBJECT

public:
    RestoreImageDialog(
        const QUuid& backupPlanId, const QUuid& storageId, const QString& planName, QWidget* parent = nullptr);

    NVB::GUI::DiskInfoRestoreModel* imageModel() const { return m_image; }
    QComboBox* targetBox() const { return m_target; }
    QPushButton* restoreButton() const { return m_restore; }
    QLabel* messageLabel() const { return m_message; }
    // The saved restore plan's id once accepted.
    QUuid restorePlanId() const { return m_restorePlanId; }

private:
    void fillTargets();
    void updateButton();
    void restore();

    QUuid m_backupPlanId;
    QUuid m_storageId;
    QString m_planName;
    NVB::GUI::DiskInfoRestoreModel* m_image;
    NVB::GUI::DiskInfoModel* m_machine;
    QTreeView* m_view;
    QComboBox* m_target;
    QLabel* m_message;
    QPushButton* m_restore;
    QUuid m_restorePlanId;
};

} // namespace NVB::Console
