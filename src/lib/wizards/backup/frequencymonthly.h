#pragma once

#include <QMap>

#include "wizards/backup/frequencydaily.h"

class QComboBox;
class QDateEdit;

namespace NVB::GUI {

// A day of the month, or the nth weekday of it, every few months from a
// start date, at the daily controls' times.
class FrequencyMonthly : public FrequencyDaily
{
    Q_OBJECT
public:
    static constexpr char Name[] = "Monthly";
    static constexpr char Prefix[] = "Monthly";

    static constexpr char FieldOccurrenceType[] = "Field_MonthlyOccurrenceType";
    static constexpr char FieldDay[] = "Field_MonthlyDay";
    static constexpr char FieldRepeatEvery[] = "Field_MonthlyRepeatEvery";
    static constexpr char FieldFrom[] = "Field_MonthlyFrom";

    // 0 "Day of Month", then "First" .. "Fourth", "Penultimate", "Last".
    static QMap<int, QString> OccurrenceType();

    FrequencyMonthly(Type type, bool inherited, PlanWizardBase::PageBase* page);

    QString summary() override;
    void initPlan(NVB::Info::Plan::Base* plan) override;
    void fromPlan(NVB::Info::Plan::Base* plan) override;
    bool validate() override;

    QString fieldName(const QString& name) const;

    QComboBox* occurrenceBox() const { return m_occurrence; }
    QComboBox* dayBox() const { return m_day; }
    QSpinBox* repeatBox() const { return m_repeat; }
    QDateEdit* fromDateEdit() const { return m_fromDate; }

private slots:
    void onOccurrenceChange(int index);

private:
    QComboBox* m_occurrence;
    QComboBox* m_day;
    QSpinBox* m_repeat;
    QDateEdit* m_fromDate;
};

} // namespace NVB::GUI
