#include "wizards/common/pagenotification.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QRadioButton>
#include <QVBoxLayout>

#include "app/application.h"
#include "records/plan/base.h"

namespace NVB::GUI {

using NVB::Info::Plan::Notification;

PlanWizardBase::PageNotification::PageNotification(QWidget* parent)
    : PageBase(tr("Notification"), parent)
    , m_block(new QWidget(this))
    , m_blockLayout(new QVBoxLayout(m_block))
    , m_enable(new QCheckBox(tr("I want to receive a notification email when plan completes"), this))
    , m_fails(new QRadioButton(tr("When plan fails"), m_block))
    , m_allCase(new QRadioButton(tr("In all cases"), m_block))
{
    setSubTitle(tr("Specify notification options"));
    auto* group = new QButtonGroup(this);
    group->addButton(m_fails);
    group->addButton(m_allCase);
    m_fails->setChecked(true);
    m_blockLayout->setContentsMargins(20, 0, 0, 0);
    m_blockLayout->addWidget(m_fails);
    m_blockLayout->addWidget(m_allCase);
    m_block->setEnabled(false);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_enable);
    layout->addWidget(m_block);
    layout->addStretch(1);
    connect(m_enable, &QCheckBox::toggled, m_block, &QWidget::setEnabled);
    connect(m_enable, &QCheckBox::toggled, this, &PageBase::completeChanged);
    registerField(QLatin1String(FieldUseEnabled), m_enable);
    registerField(QLatin1String(FieldBackupFails), m_fails);
    registerField(QLatin1String(FieldAllCase), m_allCase);
}

int PlanWizardBase::PageNotification::nextId() const
{
    return 9;
}

QString PlanWizardBase::PageNotification::summary()
{
    QString rows = headingRow(tr("Notification options:"));
    if (!m_enable->isChecked())
        rows += detailRow(tr("Never send email notification"));
    else
        rows += detailRow(m_fails->isChecked() ? tr("When plan fails") : tr("In all cases"));
    return rows;
}

bool PlanWizardBase::PageNotification::initPlan(NVB::Info::Plan::Base* plan)
{
    if (!plan)
        return false;
    Notification& notification = plan->notification();
    if (m_enable->isChecked())
        notification.setType(m_fails->isChecked() ? Notification::OnFailure : Notification::Always);
    else
        notification.setType(Notification::Never);
    // The managed edition has no box of its own: the report follows the choice.
    if (!Application::isStandalon())
        notification.setGenerateDetailedReport(m_enable->isChecked());
    return true;
}

bool PlanWizardBase::PageNotification::fromPlan(NVB::Info::Plan::Base* plan)
{
    if (!plan)
        return false;
    const Notification& notification = plan->notification();
    if (notification.type() == Notification::Never) {
        m_enable->setChecked(false);
        return true;
    }
    m_enable->setChecked(true);
    (notification.type() == Notification::OnFailure ? m_fails : m_allCase)->setChecked(true);
    return true;
}

} // namespace NVB::GUI
