#pragma once

#include "wizards/common/pagebase.h"

class QCheckBox;

namespace NVB::GUI {

// Whether a run checks all of the plan's data on the storage, or only the
// last generation.
class PlanWizardBase::PageConsistencyCheck : public PlanWizardBase::PageBase
{
    Q_OBJECT
public:
    static constexpr char FieldConsistencyCheck[] = "Field_ConsistencyCheck";

    explicit PageConsistencyCheck(QWidget* parent = nullptr);

    int nextId() const override;

    QString summary() override;
    bool initPlan(NVB::Info::Plan::Base* plan) override;
    bool fromPlan(NVB::Info::Plan::Base* plan) override;

    QCheckBox* checkBox() const;

private:
    QCheckBox* m_check;
};

} // namespace NVB::GUI
