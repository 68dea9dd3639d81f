#include "wizards/common/pagesummary.h"

#include <QCheckBox>
#include <QTextEdit>
#include <QVBoxLayout>
#include <QWizard>

namespace NVB::GUI {

PlanWizardBase::PageSummary::PageSummary(QWidget* parent)
    : PageBase(tr("Summary"), parent)
    , m_text(new QTextEdit(this))
    , m_runNow(new QCheckBox(tr("Run plan now"), this))
{
    setSubTitle(tr("Review plan"));
    setFinalPage(true);
    m_text->setReadOnly(true);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_text, 1);
    layout->addWidget(m_runNow);
    registerField(QLatin1String(Field_SummaryRunNow), m_runNow);
    connect(this, &PageSummary::setVisibleRunNow, m_runNow, &QCheckBox::setVisible);
}

QList<PlanWizardBase::PageBase*> PlanWizardBase::PageSummary::visitedPlanPages() const
{
    QList<PageBase*> pages;
    if (!wizard())
        return pages;
    for (int id : wizard()->visitedIds()) {
        if (auto* page = qobject_cast<PageBase*>(wizard()->page(id)))
            pages << page;
    }
    return pages;
}

void PlanWizardBase::PageSummary::initializePage()
{
    PageBase::initializePage();
    QString rows;
    for (PageBase* page : visitedPlanPages())
        rows += page->summary();
    m_html = QStringLiteral("<table>") + rows + QStringLiteral("</table>");
    m_text->setHtml(m_html);
}

bool PlanWizardBase::PageSummary::validatePage()
{
    // Nothing is saved here; see the class comment.
    return false;
}

int PlanWizardBase::PageSummary::nextId() const
{
    return -1;
}

QString PlanWizardBase::PageSummary::summary()
{
    return QString();
}

bool PlanWizardBase::PageSummary::initPlan(NVB::Info::Plan::Base*)
{
    return false;
}

bool PlanWizardBase::PageSummary::fromPlan(NVB::Info::Plan::Base*)
{
    return false;
}

} // namespace NVB::GUI
