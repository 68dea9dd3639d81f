#pragma once

#include <QList>

#include "wizards/backup/frequencydaily.h"

class QCheckBox;

namespace NVB::GUI {

// Some days of every week, at the daily controls' times.
class FrequencyWeekly : public FrequencyDaily
{
    Q_OBJECT
public:
    static constexpr char Name[] = "Weekly";
    static constexpr char Prefix[] = "Weekly";
    // Followed by the day's number, 1 for Monday.
    static constexpr char FieldWeeklyDay[] = "Field_WeeklyDay_";

    FrequencyWeekly(Type type, bool inherited, PlanWizardBase::PageBase* page);

    QString summary() override;
    void initPlan(NVB::Info::Plan::Base* plan) override;
    void fromPlan(NVB::Info::Plan::Base* plan) override;
    // At least one day is checked.
    bool validate() override;

    // The day fields are unique already; only the full schedule's get FullPrefix.
    QString fieldName(const QString& name) const;

    // Day 1 (Monday) to 7.
    QCheckBox* dayBox(int day) const { return m_days.value(day - 1); }

private:
    QList<QCheckBox*> m_days;
};

} // namespace NVB::GUI
