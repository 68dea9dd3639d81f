#pragma once

#include <QMap>

#include "wizards/common/pagebase.h"

class QCheckBox;
class QComboBox;
class QDateTimeEdit;
class QLabel;
class QRadioButton;
class QSpinBox;
class QStackedWidget;
class QWidget;

namespace NVB::GUI {

class FrequencyBase;

// When a plan runs: never, once at a date, or by a recurring schedule, and
// how long a run may last. The new backup format knows only weekly and
// monthly recurrence.
class PlanWizardBase::PageSchedule : public PlanWizardBase::PageBase
{
    Q_OBJECT
public:
    // Says the opposite of what it holds; other pages read it by this name.
    static constexpr char FieldScheduleEnable[] = "Field_ScheduleDisabled";
    static constexpr char FieldUseSpecificDate[] = "Field_ScheduleUseSpecificDate";
    static constexpr char FieldSpecificDateValue[] = "Field_ScheduleSpecificDateValue";
    static constexpr char FieldUseRecurring[] = "Field_ScheduleUseRecurring";
    static constexpr char FieldFrequencyType[] = "Field_ScheduleFrequencyType";
    static constexpr char FieldRunMissedPlan[] = "Field_RunMissedPlan";
    static constexpr char FieldStopAutoEnable[] = "Field_StopAutoEnable";
    static constexpr char FieldStopAutoHoursValue[] = "Field_StopAutoHoursValue";
    static constexpr char FieldStopAutoMinutesValue[] = "Field_StopAutoMinutesValue";

    PageSchedule(bool isArchive, QWidget* parent = nullptr);

    bool isComplete() const override;
    bool validatePage() override;
    int nextId() const override;

    QString summary() override;
    bool initPlan(NVB::Info::Plan::Base* plan) override;
    bool fromPlan(NVB::Info::Plan::Base* plan) override;

    // 0 daily, 1 weekly, 2 monthly.
    int frequencyKey() const;
    FrequencyBase* editor(int key) const { return m_editors.value(key); }

    QCheckBox* enableBox() const { return m_enable; }
    QRadioButton* specificDateRadio() const { return m_useDate; }
    QDateTimeEdit* specificDateEdit() const { return m_date; }
    QRadioButton* recurringRadio() const { return m_useRecurring; }
    QComboBox* frequencyBox() const { return m_frequency; }
    QCheckBox* runMissedBox() const { return m_runMissed; }
    QCheckBox* stopBox() const { return m_stop; }
    QSpinBox* stopHoursBox() const { return m_stopHours; }
    QSpinBox* stopMinutesBox() const { return m_stopMinutes; }

    // The stop limit's summary row, shared with the full schedule page.
    static QString stopRow(int hours, int minutes);

private:
    const bool m_isArchive;
    QMap<int, FrequencyBase*> m_editors;
    QCheckBox* m_enable;
    QWidget* m_block;
    QRadioButton* m_useDate;
    QDateTimeEdit* m_date;
    QRadioButton* m_useRecurring;
    QComboBox* m_frequency;
    QStackedWidget* m_stack;
    QCheckBox* m_runMissed;
    QCheckBox* m_stop;
    QSpinBox* m_stopHours;
    QSpinBox* m_stopMinutes;
};

} // namespace NVB::GUI
