#include "wizards/common/pageconsistencycheck.h"

#include <QLabel>
#include <QVBoxLayout>

#include "records/plan/backup.h"
#include "widgets/checkbox.h"

namespace NVB::GUI {

PlanWizardBase::PageConsistencyCheck::PageConsistencyCheck(QWidget* parent)
    : PageBase(tr("Backup Consistency Check"), parent)
    , m_check(new CheckBox(this))
{
    setSubTitle(tr("Set the options of backup consistency check"));
    static_cast<CheckBox*>(m_check)->setHtml(
        QStringLiteral("<tr><td><b>%1</b></td></tr>").arg(tr("Enable Full Consistency Check")));
    m_check->setChecked(true);
    auto* note = new QLabel(tr("Use this option to check backup data of this plan is still presented on backup "
                               "storage and was not modified. All full backups and related incremental backups will "
                               "be checked. If this option is OFF - only current (the last generation) is checking."),
        this);
    note->setWordWrap(true);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_check);
    layout->addWidget(note);
    layout->addStretch(1);
    registerField(QLatin1String(FieldConsistencyCheck), m_check);
}

QCheckBox* PlanWizardBase::PageConsistencyCheck::checkBox() const
{
    return m_check;
}

int PlanWizardBase::PageConsistencyCheck::nextId() const
{
    return 7;
}

QString PlanWizardBase::PageConsistencyCheck::summary()
{
    return {};
}

bool PlanWizardBase::PageConsistencyCheck::initPlan(NVB::Info::Plan::Base* plan)
{
    auto* backup = dynamic_cast<NVB::Info::Plan::Backup*>(plan);
    if (!backup)
        return false;
    backup->setUseConsistencyCheck(m_check->isChecked());
    return true;
}

bool PlanWizardBase::PageConsistencyCheck::fromPlan(NVB::Info::Plan::Base* plan)
{
    auto* backup = dynamic_cast<NVB::Info::Plan::Backup*>(plan);
    if (!backup)
        return false;
    m_check->setChecked(backup->useConsistencyCheck());
    return true;
}

} // namespace NVB::GUI
