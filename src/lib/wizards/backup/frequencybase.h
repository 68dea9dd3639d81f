#pragma once

#include <QWidget>

#include "wizards/common/pagebase.h"

namespace NVB::Info::Plan {
class Base;
class Schedule;
} // namespace NVB::Info::Plan

namespace NVB::GUI {

// An editor of one recurring schedule. The same editors serve a plan's own
// schedule and its forced full schedule, so every read and write of the
// schedule goes through schedule(), which picks the record by the type.
class FrequencyBase : public QWidget
{
    Q_OBJECT
public:
    enum Type { Plan = 0, FullPlan = 1 };

    static constexpr char FullPrefix[] = "Full_";

    FrequencyBase(Type type, PlanWizardBase::PageBase* page);

    Type type() const { return m_type; }

    virtual QString summary() = 0;
    virtual void initPlan(NVB::Info::Plan::Base* plan) = 0;
    virtual void fromPlan(NVB::Info::Plan::Base* plan) = 0;
    virtual bool validate() = 0;

signals:
    void changed();

protected:
    // The schedule this editor reads and writes within the plan.
    NVB::Info::Plan::Schedule& schedule(NVB::Info::Plan::Base* plan) const;
    PlanWizardBase::PageBase* page() const { return m_page; }

private:
    const Type m_type;
    PlanWizardBase::PageBase* m_page;
};

} // namespace NVB::GUI
