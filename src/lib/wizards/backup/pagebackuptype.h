#pragma once

#include "wizards/backup/backupplaneditwizard.h"
#include "wizards/common/pagebase.h"

class QRadioButton;

namespace NVB::GUI {

// The choice between a file plan and a disk image plan. Choosing resets every
// page to the defaults of the chosen kind. Image plans need the new backup
// format.
class BackupPlanEditWizard::PageBackupType : public PlanWizardBase::PageBase
{
    Q_OBJECT
public:
    explicit PageBackupType(bool isArchive, QWidget* parent = nullptr);

    bool validatePage() override;
    bool isComplete() const override;
    int nextId() const override;

    QString summary() override;
    bool initPlan(NVB::Info::Plan::Base* plan) override;
    bool fromPlan(NVB::Info::Plan::Base* plan) override;

    QRadioButton* fileButton() const { return m_file; }
    QRadioButton* imageButton() const { return m_image; }

private:
    const bool m_isArchive;
    QRadioButton* m_file;
    QRadioButton* m_image;
};

} // namespace NVB::GUI
