#pragma once

#include "wizards/backup/backupplaneditwizard.h"
#include "wizards/common/pagebase.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QRadioButton;
class QSpinBox;
class QWidget;

namespace NVB::GUI {

class AttentionFrame;

// How long backup data stays on the storage. The legacy format keeps a policy
// for the versions of each file; the new format keeps whole backups for an
// age. The two forms share the radio and age fields, whose meaning follows
// the format.
class BackupPlanEditWizard::PageRetentionPolicy : public PlanWizardBase::PageBase
{
    Q_OBJECT
public:
    static constexpr char FieldUseDefault[] = "Field_RPUseDefault";
    static constexpr char FieldUseCustom[] = "Field_RPUseCustom";
    static constexpr char FieldUseDeleteOlder[] = "Field_RPUseDeleteOlder";
    static constexpr char FieldUseDeleteOlderAge[] = "Field_RPUseDeleteOlderAge";
    static constexpr char FieldUseDeleteOlderType[] = "Field_RPUseDeleteOlderType";
    static constexpr char FieldUseDeleteDateType[] = "Field_UseBackupDate";
    static constexpr char FieldUseDeleteOlderKeepLast[] = "Field_RPUseDeleteOlderKeepLast";
    static constexpr char FieldUseKeepVersion[] = "Field_RPUseKeepVersion";
    static constexpr char FieldUseKeepVersionNumber[] = "Field_RPUseKeepVersionNumber";
    static constexpr char FieldUseDeleteLocalyFiles[] = "Field_RPUseDeleteFiles";
    static constexpr char FieldUseDeleteLocalyFilesValue[] = "Field_RPUseDeleteFilesValue";

    explicit PageRetentionPolicy(bool isArchive, QWidget* parent = nullptr);

    int nextId() const override;

    QString summary() override;
    bool initPlan(NVB::Info::Plan::Base* plan) override;
    bool fromPlan(NVB::Info::Plan::Base* plan) override;

    QRadioButton* defaultRadio() const { return m_useDefault; }
    QRadioButton* customRadio() const { return m_useCustom; }
    QCheckBox* deleteOlderBox() const { return m_deleteOlder; }
    QWidget* ageRow() const { return m_ageRow; }
    QComboBox* unitBox() const { return m_unit; }
    QComboBox* dateBox() const { return m_dateType; }
    QCheckBox* keepLastBox() const { return m_keepLast; }
    QCheckBox* keepVersionBox() const { return m_keepVersion; }
    QCheckBox* deleteLocalyBox() const { return m_deleteLocaly; }
    AttentionFrame* deleteLocalyAttention() const { return m_deleteLocalyAttention; }

signals:
    // The link of the default policy; opens the global policy by itself.
    void defaultOptionsRequested();

public slots:
    void onCustomPolicy(bool on);
    void onDeleteOlderDateTypeChanged();
    void onShowDefaultOptions();

private:
    void buildLegacy();
    void buildArchive();
    bool filePlan() const;
    int intField(const char* name) const;
    bool flag(const char* name) const;

    const bool m_isArchive;
    bool m_filePlan = true;
    QRadioButton* m_useDefault = nullptr;
    QRadioButton* m_useCustom = nullptr;
    QCheckBox* m_deleteOlder = nullptr;
    QWidget* m_ageRow = nullptr;
    QSpinBox* m_age = nullptr;
    QComboBox* m_unit = nullptr;
    QComboBox* m_dateType = nullptr;
    QCheckBox* m_keepLast = nullptr;
    QCheckBox* m_keepVersion = nullptr;
    QWidget* m_keepVersionRow = nullptr;
    QSpinBox* m_keepVersionNumber = nullptr;
    QCheckBox* m_deleteLocaly = nullptr;
    QWidget* m_deleteLocalyRow = nullptr;
    QSpinBox* m_deleteLocalyDays = nullptr;
    AttentionFrame* m_deleteLocalyAttention = nullptr;
};

} // namespace NVB::GUI
