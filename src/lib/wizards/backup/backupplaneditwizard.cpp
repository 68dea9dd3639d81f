#include "wizards/backup/backupplaneditwizard.h"

#include "app/application.h"
#include "core/licenserestrictions.h"
#include "records/plan/backupfile.h"
#include "stores/rebranding.h"
#include "stores/rebrandingkeys.h"
#include "wizards/backup/pageadvancedfilter.h"
#include "wizards/backup/pagecompressionendencryption.h"
#include "wizards/backup/pagebackupactions.h"
#include "wizards/backup/pagebackupdiskimageadvancedoptions.h"
#include "wizards/backup/pagebackupdiskimagesource.h"
#include "wizards/backup/pagebackupdiskimagesourceview.h"
#include "wizards/backup/pagebackuptype.h"
#include "wizards/backup/pagefullschedule.h"
#include "wizards/backup/pagename.h"
#include "wizards/backup/pageretentionpolicy.h"
#include "wizards/backup/pagesource.h"
#include "wizards/backup/pagesummary.h"
#include "wizards/common/pagecloud.h"
#include "wizards/common/pageconsistencycheck.h"
#include "wizards/common/pagenotificationstandalone.h"
#include "wizards/common/pageschedule.h"

namespace NVB::GUI {

namespace {

namespace Keys = NVB::Defines::RebrandingKeys;

// Fields of pages that other pages' rules read. The names are the keys the
// owning pages register.
constexpr char Field_CloudType[] = "Field_CloudType";
constexpr char Field_ScheduleDisabled[] = "Field_ScheduleDisabled";
constexpr char Field_DiskImageUseBlockLevel[] = "Field_DiskImageUseBlockLevel";

bool rebranding(const char* key)
{
    const NVB::Defines::Rebranding* values = NVB::Defines::Rebranding::instance();
    return values && values->value(key).toBool();
}

} // namespace

BackupPlanEditWizard::BackupPlanEditWizard(bool isArchive, QWidget* parent)
    : PlanWizardBase(PlanTypeBackup, parent)
    , m_isArchive(isArchive)
{
    QList<int> order {PageNameId, PageScheduleId, PageFullScheduleId, PageBackupActionsId};
    if (Application::isStandalon())
        order << PageNotificationStandaloneId << PageCloudId;
    else
        order << PageCloudId;
    order << PageSummaryId << PageSourceId << PageAdvancedFilterId << PageRetentionPolicyId
          << PageCompressionEndEncryptionId << PageConsistencyCheckId << PageBackupDiskImageSourceId
          << PageBackupDiskImageSourceViewId << PageBackupDiskImageAdvancedOptionsId;

    for (int id : qAsConst(order)) {
        if (QWizardPage* created = createPage(id))
            setPage(id, created);
        // A single account of the managed edition needs no choice: the flow
        // starts behind the storage page, which has filled its fields anyway.
        if (id == PageCloudId && !Application::isStandalon() && isSingleStoragePage())
            setStartId(page(PageCloudId)->nextId());
    }

    NVB::Info::Plan::BackupFile defaults;
    defaults.setIsArchive(isArchive);
    init(&defaults);
    resizeWizardPages();
}

QWizardPage* BackupPlanEditWizard::createPage(int id)
{
    switch (id) {
    case PageCloudId:
        // The new format cannot write to OpenStack accounts yet.
        return new PageCloud(false, m_isArchive, this);
    case PageNameId:
        return new PageName(m_isArchive, this);
    case PageSourceId:
        return new PageSource(this);
    case PageSummaryId:
        return new PageSummary(m_isArchive, this);
    case PageAdvancedFilterId:
        return new PageAdvancedFilter(m_isArchive, this);
    case PageRetentionPolicyId:
        return new PageRetentionPolicy(m_isArchive, this);
    case PageCompressionEndEncryptionId:
        return new PageCompressionEndEncryption(m_isArchive, this);
    case PageScheduleId:
        return new PageSchedule(m_isArchive, this);
    case PageFullScheduleId:
        return new PageFullSchedule(m_isArchive, this);
    case PageBackupActionsId:
        return new PageBackupActions(this);
    case PageNotificationStandaloneId:
        return new PageNotificationStandalone(this);
    case PageConsistencyCheckId:
        return new PageConsistencyCheck(this);
    case PageBackupDiskImageSourceId:
        return new PageBackupDiskImageSource(this);
    case PageBackupDiskImageSourceViewId:
        return new PageBackupDiskImageSourceView(this);
    case PageBackupDiskImageAdvancedOptionsId:
        return new PageBackupDiskImageAdvancedOptions(this);
    default:
        return nullptr;
    }
}

BackupPlanEditWizard* BackupPlanEditWizard::createWizard(NVB::Info::Plan::Base* plan, QWidget* parent)
{
    if (!plan)
        return nullptr;
    auto* wizard = new BackupPlanEditWizard(plan->isArchive(), parent);
    wizard->setIsEdit(true);
    wizard->setPlanId(plan->id());
    wizard->init(plan);
    return wizard;
}

void BackupPlanEditWizard::init(NVB::Info::Plan::Base* plan)
{
    if (!isEdit())
        setWindowTitle(tr("Create backup plan"));
    else
        setWindowTitle(QStringLiteral("%1 %2").arg(tr("Edit backup plan:"), plan ? plan->name() : QString()));
    const bool image = plan && plan->type() == static_cast<int>(NVB::Info::Plan::SubType::DiskImage);
    setProperty(Property_BackupPlanType, QVariant::fromValue<unsigned char>(image ? PlanTypeDiskImage : PlanTypeFile));
    for (int id : pageIds()) {
        if (auto* planPage = qobject_cast<PageBase*>(page(id)))
            planPage->fromPlan(plan);
    }
}

void BackupPlanEditWizard::addBackupTypePage()
{
    if (hasPage(PageBackupTypeId))
        return;
    setPage(PageBackupTypeId, new PageBackupType(m_isArchive, this));
    setStartId(PageBackupTypeId);
}

unsigned char BackupPlanEditWizard::backupPlanType() const
{
    return property(Property_BackupPlanType).value<unsigned char>();
}

bool BackupPlanEditWizard::hasPage(int id) const
{
    return page(id) != nullptr;
}

bool BackupPlanEditWizard::isSingleStoragePage() const
{
    // The storage page tells by its property "single".
    const QWizardPage* storage = page(PageCloudId);
    return storage && storage->property("single").toBool();
}

int BackupPlanEditWizard::nextId() const
{
    int id = PlanWizardBase::nextId();
    // Every rule moves forward, so the walk ends; the bound guards a rule
    // that one day doesn't.
    for (int steps = 0; id != -1 && !hasPage(id) && steps < 32; ++steps)
        id = designNextId(id);
    return hasPage(id) ? id : -1;
}

int BackupPlanEditWizard::designNextId(int id) const
{
    switch (id) {
    case PageBackupTypeId:
        return PageCloudId;
    case PageCloudId:
        return PageNameId;
    case PageNameId:
        if (backupPlanType() == PlanTypeFile)
            return PageSourceId;
        if (backupPlanType() == PlanTypeDiskImage)
            return PageBackupDiskImageSourceId;
        return -1;
    case PageSourceId:
        return PageAdvancedFilterId;
    case PageAdvancedFilterId:
        return advancedFilterNextId();
    case PageCompressionEndEncryptionId:
        return m_isArchive ? PageConsistencyCheckId : PageScheduleId;
    case PageConsistencyCheckId:
        return PageScheduleId;
    case PageScheduleId:
        return scheduleNextId();
    case PageFullScheduleId:
        return PageRetentionPolicyId;
    case PageRetentionPolicyId:
        return retentionNextId();
    case PageBackupActionsId:
        return actionsNextId();
    case PageNotificationStandaloneId:
        return PageSummaryId;
    case PageBackupDiskImageSourceId:
        return PageBackupDiskImageSourceViewId;
    case PageBackupDiskImageSourceViewId:
        return PageBackupDiskImageAdvancedOptionsId;
    case PageBackupDiskImageAdvancedOptionsId:
        return PageCompressionEndEncryptionId;
    default:
        return -1;
    }
}

int BackupPlanEditWizard::advancedFilterNextId() const
{
    // Without a storage page there is no provider to offer options for.
    const int type = hasPage(PageCloudId) ? field(QLatin1String(Field_CloudType)).toInt() : 0;
    const bool s3 = (type == 2 || type == 20)
        && (rebranding(Keys::SSE::Visible) || rebranding(Keys::AmazonS3::StorageClass::Visible)
            || rebranding(Keys::AmazonS3::S3Accelerate::Visible));
    const bool azure = type == 3 && Application::isStandalon();
    if (rebranding(Keys::Compression::Visible) || rebranding(Keys::Encryption::Visible) || s3 || azure)
        return PageCompressionEndEncryptionId;
    return PageRetentionPolicyId;
}

int BackupPlanEditWizard::scheduleNextId() const
{
    if (planType() != PlanTypeBackup)
        return PageRetentionPolicyId;
    if (m_isArchive && hasPage(PageScheduleId) && field(QLatin1String(Field_ScheduleDisabled)).toBool())
        return PageFullScheduleId;
    if (backupPlanType() == PlanTypeFile)
        return field(QLatin1String(PageName::Field_UseFileDiffirentialBackup)).toBool() ? PageFullScheduleId
                                                                                        : PageRetentionPolicyId;
    if (backupPlanType() == PlanTypeDiskImage)
        return hasPage(PageBackupDiskImageAdvancedOptionsId)
                && field(QLatin1String(Field_DiskImageUseBlockLevel)).toBool()
            ? PageFullScheduleId
            : PageRetentionPolicyId;
    return PageRetentionPolicyId;
}

int BackupPlanEditWizard::retentionNextId() const
{
    if (planType() == PlanTypeBackup && NVB::License::LicenseRestrictions::isPrePostActionsAvailable())
        return PageBackupActionsId;
    return actionsNextId();
}

int BackupPlanEditWizard::actionsNextId() const
{
    return NVB::License::LicenseRestrictions::isNotificationsAvailable() ? PageNotificationStandaloneId : PageSummaryId;
}

} // namespace NVB::GUI
