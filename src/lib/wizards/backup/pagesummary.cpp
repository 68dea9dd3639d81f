#include "wizards/backup/pagesummary.h"

#include <QVariant>
#include <QWizard>

#include "core/nvldebug.h"
#include "plans/planeditwait.h"
#include "records/plan/backupdiskimage.h"
#include "records/plan/backupfile.h"

namespace NVB::GUI {

namespace {
// The key the storage page registers its account id under.
constexpr char Field_CloudId[] = "Field_CloudId";
} // namespace

BackupPlanEditWizard::PageSummary::PageSummary(bool isArchive, QWidget* parent)
    : PlanWizardBase::PageSummary(parent)
    , m_isArchive(isArchive)
    , m_saver(&PageSummary::saveByWait)
{ }

void BackupPlanEditWizard::PageSummary::setSaver(Saver saver)
{
    m_saver = saver ? std::move(saver) : Saver(&PageSummary::saveByWait);
}

QSharedPointer<NVB::Info::Plan::Base> BackupPlanEditWizard::PageSummary::createPlan() const
{
    QWizard* owner = wizard();
    if (!owner)
        return {};
    // A new record, never the one the pages were filled from: what no visited
    // page writes keeps the record's default, also when a plan is edited.
    QSharedPointer<NVB::Info::Plan::Base> plan;
    switch (owner->property(Property_BackupPlanType).value<unsigned char>()) {
    case PlanTypeFile:
        plan.reset(new NVB::Info::Plan::BackupFile());
        break;
    case PlanTypeDiskImage:
        plan.reset(new NVB::Info::Plan::BackupDiskImage());
        break;
    default:
        return {};
    }
    // A record starts in the new format; a legacy wizard must say otherwise.
    plan->setIsArchive(m_isArchive);
    if (owner->property("IsEdit").toBool())
        plan->setId(owner->property("PlanId").toUuid());

    for (PageBase* page : visitedPlanPages())
        page->initPlan(plan.data());

    // A storage page that chose by itself was never visited.
    const QWizardPage* storage = owner->page(PageCloudId);
    if (storage && storage->property("single").toBool())
        plan->setStorage(QUuid(field(QLatin1String(Field_CloudId)).toString()));
    return plan;
}

bool BackupPlanEditWizard::PageSummary::validatePage()
{
    try {
        const QSharedPointer<NVB::Info::Plan::Base> plan = createPlan();
        if (!plan)
            throw tr("The plan's content type has no backup plan");
        const bool isEdit = wizard()->property("IsEdit").toBool();
        return m_saver(isEdit, plan->id(), plan->toXml(), field(QLatin1String(Field_SummaryRunNow)).toBool(), this);
    } catch (const QString& text) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << text;
        return false;
    }
}

bool BackupPlanEditWizard::PageSummary::saveByWait(
    bool isEdit, const QUuid& id, const QString& xml, bool run, QWidget* parent)
{
    PlanEditWait wait(isEdit, parent);
    wait.setPlan(id, xml, run);
    return wait.result() == 1;
}

} // namespace NVB::GUI
