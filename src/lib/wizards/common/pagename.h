#pragma once

#include "wizards/common/pagebase.h"

class QLineEdit;

namespace NVB::GUI {

// The plain name page of the frame: a name that isn't blank, nothing else.
class PlanWizardBase::PageName : public PlanWizardBase::PageBase
{
    Q_OBJECT
public:
    static constexpr char Field_PlanName[] = "Field_PlanName";

    explicit PageName(QWidget* parent = nullptr);

    bool isComplete() const override;
    bool validatePage() override;
    int nextId() const override;

    QString summary() override;
    bool initPlan(NVB::Info::Plan::Base* plan) override;
    bool fromPlan(NVB::Info::Plan::Base* plan) override;

private:
    QLineEdit* m_name;
};

} // namespace NVB::GUI
