#pragma once

#include "wizards/backup/backupplaneditwizard.h"
#include "wizards/common/pagebase.h"

namespace NVB::GUI {

class RadioButton;

// Which volumes a disk image plan takes: the system's, all, or a choice.
class BackupPlanEditWizard::PageBackupDiskImageSource : public PlanWizardBase::PageBase
{
    Q_OBJECT
public:
    static constexpr char Field_SystemRequire[] = "Field_SystemRequire";
    static constexpr char Field_AllDrives[] = "Field_AllDrives";
    static constexpr char Field_SelectedOnly[] = "Field_SelectedOnly";

    explicit PageBackupDiskImageSource(QWidget* parent = nullptr);

    bool isComplete() const override;
    int nextId() const override;

    QString summary() override;
    bool initPlan(NVB::Info::Plan::Base* plan) override;
    bool fromPlan(NVB::Info::Plan::Base* plan) override;

private:
    RadioButton* m_systemRequire;
    RadioButton* m_allDrives;
    RadioButton* m_selectedOnly;
};

} // namespace NVB::GUI
