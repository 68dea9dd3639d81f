#pragma once

#include <QSharedPointer>

#include "records/disk/diskinfo.h"
#include "wizards/backup/backupplaneditwizard.h"
#include "wizards/common/pagebase.h"

namespace NVB::GUI {

class DiskInfoBackupModel;
class DiskInfoBackupViewWidget;

// The disks of the machine with the volumes a disk image plan takes. The
// disks come from the engine; a plan's saved choice is laid over them.
class BackupPlanEditWizard::PageBackupDiskImageSourceView : public PlanWizardBase::PageBase
{
    Q_OBJECT
public:
    explicit PageBackupDiskImageSourceView(QWidget* parent = nullptr);

    void initializePage() override;
    bool isComplete() const override;
    int nextId() const override;

    QString summary() override;
    bool initPlan(NVB::Info::Plan::Base* plan) override;
    bool fromPlan(NVB::Info::Plan::Base* plan) override;

    DiskInfoBackupModel* model() const { return m_model; }
    DiskInfoBackupViewWidget* viewWidget() const { return m_view; }

private slots:
    void onComplite();
    void onError(const QString& text);
    void onLoaded();
    void onDataChanged();

private:
    // The earlier page's choice, applied to the model.
    void applySourceChoice();

    DiskInfoBackupModel* m_model;
    DiskInfoBackupViewWidget* m_view;
    QSharedPointer<NVB::Info::DiskInfo> m_diskInfo;
    bool m_watching = false;
};

} // namespace NVB::GUI
