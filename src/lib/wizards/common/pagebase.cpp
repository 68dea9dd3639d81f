#include "wizards/common/pagebase.h"

#include <QStringList>
#include <QVariant>
#include <QWizard>

namespace NVB::GUI {

PlanWizardBase::PageBase::PageBase(const QString& name, QWidget* parent)
    : QWizardPage(parent)
    , m_name(name)
{ }

int PlanWizardBase::PageBase::planType() const
{
    return wizard() ? wizard()->property("PlanType").toInt() : 0;
}

void PlanWizardBase::PageBase::initializePage()
{
    setTitle(QStringLiteral("%1: %2").arg(PlanWizardBase::wizardName(planType()), m_name));
}

void PlanWizardBase::PageBase::cleanupPage()
{ }

bool PlanWizardBase::PageBase::validatePage()
{
    return QWizardPage::validatePage();
}

bool PlanWizardBase::PageBase::isComplete() const
{
    return QWizardPage::isComplete();
}

int PlanWizardBase::PageBase::nextId() const
{
    return QWizardPage::nextId();
}

QString PlanWizardBase::PageBase::headingRow(const QString& heading)
{
    return QStringLiteral("<tr><td>%1</td><td></td></tr>").arg(heading);
}

QString PlanWizardBase::PageBase::detailRow(const QString& detail)
{
    return QStringLiteral("<tr><td></td><td>%1</td></tr>").arg(detail);
}

QString PlanWizardBase::PageBase::detailRow(const QStringList& parts)
{
    return detailRow(parts.join(QLatin1Char(' ')));
}

QString PlanWizardBase::PageBase::valueRow(const QString& label, const QString& value)
{
    return QStringLiteral("<tr><td>%1</td><td>%2</td></tr>").arg(label, value);
}

} // namespace NVB::GUI
