#pragma once

#include "wizards/common/pagebase.h"

class QCheckBox;
class QTextEdit;

namespace NVB::GUI {

// The last page: what every visited page says about itself, and the choice
// to run the plan at once. A concrete wizard saves in validatePage(); this
// one refuses to finish, so that a wizard that forgot to save can't close.
class PlanWizardBase::PageSummary : public PlanWizardBase::PageBase
{
    Q_OBJECT
public:
    static constexpr char Field_SummaryRunNow[] = "Field_SummaryRunNow";

    explicit PageSummary(QWidget* parent = nullptr);

    void initializePage() override;
    bool validatePage() override;
    int nextId() const override;

    QString summary() override;
    bool initPlan(NVB::Info::Plan::Base* plan) override;
    bool fromPlan(NVB::Info::Plan::Base* plan) override;

    // The summary as shown, in HTML.
    QString summaryHtml() const { return m_html; }
    QTextEdit* textView() const { return m_text; }

signals:
    void setVisibleRunNow(bool visible);

protected:
    // The wizard's visited pages that are plan pages, in visiting order.
    QList<PlanWizardBase::PageBase*> visitedPlanPages() const;

private:
    QTextEdit* m_text;
    QCheckBox* m_runNow;
    QString m_html;
};

} // namespace NVB::GUI
