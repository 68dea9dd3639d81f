#pragma once

#include <functional>

#include "wizards/backup/backupplaneditwizard.h"
#include "wizards/common/pagebase.h"

class QCheckBox;
class QComboBox;
class QListWidget;
class QSpinBox;

namespace NVB::GUI {

class CheckBox;

// How a disk image plan reads its volumes: block level, bad sectors, the
// snapshot, read-ahead and the block size.
class BackupPlanEditWizard::PageBackupDiskImageAdvancedOptions : public PlanWizardBase::PageBase
{
    Q_OBJECT
public:
    static constexpr char Field_DiskImageUseBlockLevel[] = "Field_DiskImageUseBlockLevel";
    static constexpr char Field_DiskImageExclude[] = "Field_DiskImageExclude";
    static constexpr char Field_DiskImageIgnoreBadSectors[] = "Field_DiskImageIgnoreBadSectors";
    static constexpr char Field_DiskImageDisableSnapshotDriver[] = "Field_DiskImageDisableSnapshotDriver";
    static constexpr char Field_DiskImagePrefetchBlockValue[] = "Field_DiskImagePrefetchBlockValue";
    static constexpr char Field_DiskImageBlockSizeValue[] = "Field_DiskImageBlockSizeValue";

    explicit PageBackupDiskImageAdvancedOptions(QWidget* parent = nullptr);

    void initializePage() override;
    int nextId() const override;

    QString summary() override;
    bool initPlan(NVB::Info::Plan::Base* plan) override;
    bool fromPlan(NVB::Info::Plan::Base* plan) override;

    // What answers "Snapshot driver not installed. Install it?"; a question
    // box unless set. Tests answer without one.
    void setInstallQuestion(std::function<bool(QWidget*)> ask) { m_ask = std::move(ask); }
    // Whether snapshots can be taken; InstallSnapshotDriverDialog::CheckInstall
    // unless set.
    void setInstallCheck(std::function<bool()> check) { m_check = std::move(check); }

    QCheckBox* disableSnapshotBox() const { return m_disableSnapshot; }
    QComboBox* blockSizeBox() const { return m_blockSize; }

private:
    QCheckBox* m_blockLevel;
    CheckBox* m_exclude;
    QListWidget* m_excludeList;
    QCheckBox* m_ignoreBadSectors;
    QCheckBox* m_disableSnapshot;
    QSpinBox* m_prefetch;
    QComboBox* m_blockSize;
    std::function<bool(QWidget*)> m_ask;
    std::function<bool()> m_check;
};

} // namespace NVB::GUI
