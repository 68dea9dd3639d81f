#include "wizards/backup/pagebackupdiskimagesource.h"

#include <QVBoxLayout>

#include "records/plan/backupdiskimage.h"
#include "widgets/radiobutton.h"

namespace NVB::GUI {

namespace {

const QString RichText = QStringLiteral("<table><tr><td>%1</td></tr><tr><td><small>%2</small></td></tr></table>");

} // namespace

BackupPlanEditWizard::PageBackupDiskImageSource::PageBackupDiskImageSource(QWidget* parent)
    : PageBase(tr("Select Partitions"), parent)
    , m_systemRequire(new RadioButton(RichText.arg(tr("Backup only system required partitions"),
                                          tr("All operation system required partitions will be added automatically")),
          this))
    , m_allDrives(
          new RadioButton(RichText.arg(tr("Backup All Drives"), tr("All disk drives will be added to backup")), this))
    , m_selectedOnly(new RadioButton(
          RichText.arg(tr("Backup selected partitions only"), tr("Select partitions to backup manually")), this))
{
    setSubTitle(tr("Select Partitions to backup"));
    // The system's volumes are not told apart reliably enough to be the
    // only choice a user makes.
    m_systemRequire->setEnabled(false);
    m_selectedOnly->setChecked(true);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_systemRequire);
    layout->addWidget(m_allDrives);
    layout->addWidget(m_selectedOnly);
    layout->addStretch(1);
    registerField(QLatin1String(Field_SystemRequire), m_systemRequire);
    registerField(QLatin1String(Field_AllDrives), m_allDrives);
    registerField(QLatin1String(Field_SelectedOnly), m_selectedOnly);
}

bool BackupPlanEditWizard::PageBackupDiskImageSource::isComplete() const
{
    return true;
}

int BackupPlanEditWizard::PageBackupDiskImageSource::nextId() const
{
    return PageBackupDiskImageSourceViewId;
}

QString BackupPlanEditWizard::PageBackupDiskImageSource::summary()
{
    QString title;
    if (m_systemRequire->isChecked())
        title = tr("Backup only system required partitions");
    else if (m_allDrives->isChecked())
        title = tr("Backup All Drives");
    else
        title = tr("Backup selected partitions only");
    return headingRow(tr("Backup source:")) + detailRow(QStringLiteral("<b>%1</b>").arg(title));
}

bool BackupPlanEditWizard::PageBackupDiskImageSource::initPlan(NVB::Info::Plan::Base* plan)
{
    using NVB::Info::Plan::BackupDiskImage;
    auto* image = dynamic_cast<BackupDiskImage*>(plan);
    if (!image)
        return false;
    image->setBackupVolumesType(m_systemRequire->isChecked() ? BackupDiskImage::SystemRequired
            : m_allDrives->isChecked()                       ? BackupDiskImage::AllDrives
                                                             : BackupDiskImage::SelectedPartitions);
    return true;
}

bool BackupPlanEditWizard::PageBackupDiskImageSource::fromPlan(NVB::Info::Plan::Base* plan)
{
    using NVB::Info::Plan::BackupDiskImage;
    const auto* image = dynamic_cast<const BackupDiskImage*>(plan);
    if (!image)
        return false;
    switch (image->backupVolumesType()) {
    case BackupDiskImage::SystemRequired:
        m_systemRequire->setChecked(true);
        break;
    case BackupDiskImage::AllDrives:
        m_allDrives->setChecked(true);
        break;
    default:
        m_selectedOnly->setChecked(true);
    }
    return true;
}

} // namespace NVB::GUI
