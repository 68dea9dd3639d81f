#include "wizards/backup/pagebackupdiskimageadvancedoptions.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QListWidget>
#include <QMessageBox>
#include <QSpinBox>
#include <QVBoxLayout>

#include "records/plan/backupdiskimage.h"
#include "widgets/checkbox.h"
#include "wizards/backup/blocksizevalue.h"
#include "wizards/backup/installsnapshotdriverdialog.h"

namespace NVB::GUI {

BackupPlanEditWizard::PageBackupDiskImageAdvancedOptions::PageBackupDiskImageAdvancedOptions(QWidget* parent)
    : PageBase(tr("Advanced Options"), parent)
    , m_blockLevel(new QCheckBox(tr("Use block level backup"), this))
    , m_exclude(new CheckBox(this))
    , m_excludeList(new QListWidget(this))
    , m_ignoreBadSectors(new QCheckBox(tr("Ignore bad sectors"), this))
    , m_disableSnapshot(new QCheckBox(tr("Disable snapshot driver, use direct access to volume"), this))
    , m_prefetch(new QSpinBox(this))
    , m_blockSize(new QComboBox(this))
{
    setSubTitle(tr("Select advanced options"));
    m_exclude->setHtml(QStringLiteral("<table><tr><td>%1</td></tr><tr><td><small>%2</small></td></tr></table>")
                           .arg(tr("Exclude files/folders"),
                               tr("you can exclude specific folders or files from backup to reduce backup size.")));
    m_excludeList->setMaximumHeight(50);
    m_prefetch->setMaximum(9999999);
    m_blockSize->addItems(BlockSizeValueString);
    m_blockSize->setObjectName(QStringLiteral("blockSize"));
    m_disableSnapshot->setObjectName(QStringLiteral("disableSnapshot"));

    auto* form = new QFormLayout();
    form->addRow(tr("Prefetch block count"), m_prefetch);
    form->addRow(tr("Block size:"), m_blockSize);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_blockLevel);
    layout->addWidget(m_exclude);
    layout->addWidget(m_excludeList);
    layout->addWidget(m_ignoreBadSectors);
    layout->addWidget(m_disableSnapshot);
    layout->addLayout(form);
    layout->addStretch(1);

    registerField(QLatin1String(Field_DiskImageUseBlockLevel), m_blockLevel);
    registerField(QLatin1String(Field_DiskImageExclude), m_exclude);
    registerField(QLatin1String(Field_DiskImageIgnoreBadSectors), m_ignoreBadSectors);
    registerField(QLatin1String(Field_DiskImageDisableSnapshotDriver), m_disableSnapshot);
    registerField(QLatin1String(Field_DiskImagePrefetchBlockValue), m_prefetch);
    registerField(QLatin1String(Field_DiskImageBlockSizeValue), m_blockSize);
}

void BackupPlanEditWizard::PageBackupDiskImageAdvancedOptions::initializePage()
{
    PageBase::initializePage();
    const auto installed = [this] { return m_check ? m_check() : InstallSnapshotDriverDialog::CheckInstall(); };
    bool driver = installed();
    if (!driver) {
        const bool yes = m_ask
            ? m_ask(this)
            : QMessageBox::question(this, tr("Snapshot driver"), tr("Snapshot driver not installed. Install it?"),
                  QMessageBox::Yes | QMessageBox::No)
                == QMessageBox::Yes;
        if (yes && InstallSnapshotDriverDialog(this).exec() == QDialog::Accepted)
            driver = installed();
    }
    // Without snapshots the volume can only be read directly.
    if (!driver)
        m_disableSnapshot->setChecked(true);
    m_disableSnapshot->setEnabled(driver);
}

int BackupPlanEditWizard::PageBackupDiskImageAdvancedOptions::nextId() const
{
    return PageCompressionEndEncryptionId;
}

QString BackupPlanEditWizard::PageBackupDiskImageAdvancedOptions::summary()
{
    QString rows = headingRow(tr("Advanced options:"));
    if (m_blockLevel->isChecked())
        rows += detailRow(tr("Use block level backup"));
    if (m_ignoreBadSectors->isChecked())
        rows += detailRow(tr("Ignore bad sectors"));
    if (m_disableSnapshot->isChecked())
        rows += detailRow(tr("Disable snapshot driver, use direct access to volume"));
    rows += detailRow(QStringLiteral("%1: %2").arg(tr("Prefetch block count")).arg(m_prefetch->value()));
    rows += detailRow(QStringLiteral("%1: %2").arg(tr("Block size"), m_blockSize->currentText()));
    return rows;
}

bool BackupPlanEditWizard::PageBackupDiskImageAdvancedOptions::initPlan(NVB::Info::Plan::Base* plan)
{
    auto* image = dynamic_cast<NVB::Info::Plan::BackupDiskImage*>(plan);
    if (!image)
        return false;
    image->setUseDifferentialUpload(m_blockLevel->isChecked());
    image->setIgnoreBadSectors(m_ignoreBadSectors->isChecked());
    image->setDisableSnapshot(m_disableSnapshot->isChecked());
    image->setPrefetchBlockCount(static_cast<unsigned long long>(m_prefetch->value()));
    const int index = m_blockSize->currentIndex();
    if (index >= 0 && index < BlockSizeValue.size())
        image->setDifferentialBlockSize(BlockSizeValue.at(index));
    return true;
}

bool BackupPlanEditWizard::PageBackupDiskImageAdvancedOptions::fromPlan(NVB::Info::Plan::Base* plan)
{
    const auto* image = dynamic_cast<const NVB::Info::Plan::BackupDiskImage*>(plan);
    if (!image)
        return false;
    m_blockLevel->setChecked(image->useDifferentialUpload());
    m_ignoreBadSectors->setChecked(image->ignoreBadSectors());
    m_disableSnapshot->setChecked(image->disableSnapshot());
    m_prefetch->setValue(int(qMin<unsigned long long>(image->prefetchBlockCount(), 9999999)));
    m_blockSize->setCurrentIndex(BlockSizeValue.indexOf(image->differentialBlockSize()));
    return true;
}

} // namespace NVB::GUI
