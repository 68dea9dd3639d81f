#include "wizards/common/pagename.h"

#include <QFormLayout>
#include <QLineEdit>

#include "records/plan/base.h"

namespace NVB::GUI {

PlanWizardBase::PageName::PageName(QWidget* parent)
    : PageBase(tr("Plan name"), parent)
    , m_name(new QLineEdit(this))
{
    setSubTitle(tr("Specify plan name"));
    m_name->setMinimumWidth(200);
    auto* layout = new QFormLayout(this);
    layout->addRow(tr("Plan name:"), m_name);
    registerField(QLatin1String(Field_PlanName), m_name);
    connect(m_name, &QLineEdit::textChanged, this, &PageName::completeChanged);
}

bool PlanWizardBase::PageName::isComplete() const
{
    return !m_name->text().trimmed().isEmpty();
}

bool PlanWizardBase::PageName::validatePage()
{
    return isComplete();
}

int PlanWizardBase::PageName::nextId() const
{
    return 4;
}

QString PlanWizardBase::PageName::summary()
{
    return valueRow(tr("Plan name:"), field(QLatin1String(Field_PlanName)).toString().toHtmlEscaped());
}

bool PlanWizardBase::PageName::initPlan(NVB::Info::Plan::Base* plan)
{
    if (!plan)
        return false;
    plan->setName(field(QLatin1String(Field_PlanName)).toString());
    return true;
}

bool PlanWizardBase::PageName::fromPlan(NVB::Info::Plan::Base* plan)
{
    if (!plan)
        return false;
    setField(QLatin1String(Field_PlanName), plan->name());
    return true;
}

} // namespace NVB::GUI
