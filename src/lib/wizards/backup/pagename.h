#pragma once

#include "wizards/backup/backupplaneditwizard.h"
#include "wizards/common/pagebase.h"

class QCheckBox;
class QLineEdit;

namespace NVB::GUI {

class CheckBox;

// The backup plan's name, and for legacy plans the block level and the
// "save configuration" choices. In the new backup format both are fixed:
// file plans always upload differentially and the configuration always
// travels with the backup.
class BackupPlanEditWizard::PageName : public PlanWizardBase::PageBase
{
    Q_OBJECT
public:
    static constexpr char Field_PlanName[] = "Field_PlanName";
    static constexpr char Field_UseFileDiffirentialBackup[] = "Field_UseFileDiffirentialBackup";
    static constexpr char Field_SaveOnCloud[] = "Field_SaveOnCloud";

    explicit PageName(bool isArchive, QWidget* parent = nullptr);

    bool isComplete() const override;
    bool validatePage() override;
    int nextId() const override;

    QString summary() override;
    bool initPlan(NVB::Info::Plan::Base* plan) override;
    bool fromPlan(NVB::Info::Plan::Base* plan) override;

    QLineEdit* nameEdit() const { return m_name; }
    QCheckBox* blockLevelBox() const { return m_blockLevel; }
    CheckBox* saveOnCloudBox() const { return m_saveOnCloud; }

private:
    unsigned char backupPlanType() const;

    const bool m_isArchive;
    QLineEdit* m_name;
    QCheckBox* m_blockLevel;
    CheckBox* m_saveOnCloud;
};

} // namespace NVB::GUI
