#pragma once

#include <QMap>

#include "wizards/backup/backupplaneditwizard.h"
#include "wizards/common/pagebase.h"

class QCheckBox;
class QComboBox;
class QSpinBox;
class QStackedWidget;
class QWidget;

namespace NVB::GUI {

class CheckBox;
class FrequencyBase;

// When a backup plan's run is a forced full backup. In the new backup
// format the full schedule's start time is the recurring schedule's.
class BackupPlanEditWizard::PageFullSchedule : public PlanWizardBase::PageBase
{
    Q_OBJECT
public:
    static constexpr char FieldFullScheduleEnable[] = "Field_FullScheduleEnable";
    static constexpr char FieldFullScheduleFrequencyType[] = "Field_FullScheduleFrequencyType";
    static constexpr char FieldFullScheduleRunIsModified[] = "Field_FullScheduleRunIsModified";
    static constexpr char FieldFullScheduleRunIsModifiedValue[] = "Field_FullScheduleRunIsModifiedValue";
    static constexpr char FieldFullShceduleStopAutoEnable[] = "Field_FullShceduleStopAutoEnable";
    static constexpr char FieldFullShceduleStopAutoHoursValue[] = "Field_FullShceduleStopAutoHoursValue";
    static constexpr char FieldFullShceduleStopAutoMinutesValue[] = "Field_FullShceduleMinutesValue";

    PageFullSchedule(bool isArchive, QWidget* parent = nullptr);

    void initializePage() override;
    bool isComplete() const override;
    bool validatePage() override;
    int nextId() const override;

    QString summary() override;
    bool initPlan(NVB::Info::Plan::Base* plan) override;
    bool fromPlan(NVB::Info::Plan::Base* plan) override;

    int frequencyKey() const;
    FrequencyBase* editor(int key) const { return m_editors.value(key); }
    CheckBox* enableBox() const { return m_enable; }
    QComboBox* frequencyBox() const { return m_frequency; }
    QCheckBox* stopBox() const { return m_stop; }
    QSpinBox* stopHoursBox() const { return m_stopHours; }
    QSpinBox* stopMinutesBox() const { return m_stopMinutes; }

private:
    const bool m_isArchive;
    // The plan's subtype() as loaded; 5 until a plan is loaded.
    int m_subtype = 5;
    QMap<int, FrequencyBase*> m_editors;
    CheckBox* m_enable;
    QWidget* m_block;
    QComboBox* m_frequency;
    QStackedWidget* m_stack;
    QCheckBox* m_runIsModified;
    QSpinBox* m_runIsModifiedValue;
    QCheckBox* m_stop;
    QSpinBox* m_stopHours;
    QSpinBox* m_stopMinutes;
};

} // namespace NVB::GUI
