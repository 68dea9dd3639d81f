#pragma once

#include "wizards/backup/backupplaneditwizard.h"
#include "wizards/common/pagebase.h"

namespace NVB::GUI {

class PostActionWidget;
class PreActionWidget;

// The commands run before and after the backup.
class BackupPlanEditWizard::PageBackupActions : public PlanWizardBase::PageBase
{
    Q_OBJECT
public:
    explicit PageBackupActions(QWidget* parent = nullptr);

    bool isComplete() const override;
    int nextId() const override;

    QString summary() override;
    bool initPlan(NVB::Info::Plan::Base* plan) override;
    bool fromPlan(NVB::Info::Plan::Base* plan) override;

    PreActionWidget* preAction() const { return m_pre; }
    PostActionWidget* postAction() const { return m_post; }

private:
    PreActionWidget* m_pre;
    PostActionWidget* m_post;
};

} // namespace NVB::GUI
