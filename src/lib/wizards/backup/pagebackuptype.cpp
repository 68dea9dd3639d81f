#include "wizards/backup/pagebackuptype.h"

#include <QRadioButton>
#include <QScopedPointer>
#include <QVBoxLayout>
#include <QVariant>
#include <QWizard>

#include "records/plan/backupdiskimage.h"
#include "records/plan/backupfile.h"

namespace NVB::GUI {

BackupPlanEditWizard::PageBackupType::PageBackupType(bool isArchive, QWidget* parent)
    : PageBase(tr("Select Backup type"), parent)
    , m_isArchive(isArchive)
    , m_file(new QRadioButton(tr("File level Backup"), this))
    , m_image(new QRadioButton(tr("Image-Based Backup"), this))
{
    m_file->setChecked(true);
    m_image->setEnabled(isArchive);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_file);
    layout->addWidget(m_image);
    layout->addStretch(1);
}

bool BackupPlanEditWizard::PageBackupType::validatePage()
{
    QWizard* owner = wizard();
    if (!owner)
        return false;
    const unsigned char kind = m_image->isChecked() ? PlanTypeDiskImage : PlanTypeFile;
    owner->setProperty(Property_BackupPlanType, QVariant::fromValue<unsigned char>(kind));
    QScopedPointer<NVB::Info::Plan::Base> fresh;
    if (kind == PlanTypeDiskImage)
        fresh.reset(new NVB::Info::Plan::BackupDiskImage());
    else
        fresh.reset(new NVB::Info::Plan::BackupFile());
    fresh->setIsArchive(m_isArchive);
    for (int id : owner->pageIds()) {
        if (auto* page = qobject_cast<PageBase*>(owner->page(id)))
            page->fromPlan(fresh.data());
    }
    return true;
}

bool BackupPlanEditWizard::PageBackupType::isComplete() const
{
    return true;
}

int BackupPlanEditWizard::PageBackupType::nextId() const
{
    return PageCloudId;
}

QString BackupPlanEditWizard::PageBackupType::summary()
{
    return QString();
}

bool BackupPlanEditWizard::PageBackupType::initPlan(NVB::Info::Plan::Base* plan)
{
    // The kind is the record's class; there is nothing to write.
    return plan != nullptr;
}

bool BackupPlanEditWizard::PageBackupType::fromPlan(NVB::Info::Plan::Base* plan)
{
    if (!plan)
        return false;
    const bool image = plan->type() == static_cast<int>(NVB::Info::Plan::SubType::DiskImage);
    (image && m_isArchive ? m_image : m_file)->setChecked(true);
    return true;
}

} // namespace NVB::GUI
