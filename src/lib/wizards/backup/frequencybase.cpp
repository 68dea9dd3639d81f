#include "wizards/backup/frequencybase.h"

#include "records/plan/backup.h"

namespace NVB::GUI {

FrequencyBase::FrequencyBase(Type type, PlanWizardBase::PageBase* page)
    : QWidget(page)
    , m_type(type)
    , m_page(page)
{ }

NVB::Info::Plan::Schedule& FrequencyBase::schedule(NVB::Info::Plan::Base* plan) const
{
    if (m_type == FullPlan && plan->subtype() == 1) {
        if (auto* backup = dynamic_cast<NVB::Info::Plan::Backup*>(plan))
            return backup->forceFullSchedule();
    }
    return plan->schedule();
}

} // namespace NVB::GUI
