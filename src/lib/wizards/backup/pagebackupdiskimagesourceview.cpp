#include "wizards/backup/pagebackupdiskimagesourceview.h"

#include <utility>

#include <QLocale>
#include <QMessageBox>
#include <QTreeView>
#include <QVBoxLayout>

#include "disks/diskinfobackupmodel.h"
#include "disks/diskinfobackupviewwidget.h"
#include "records/plan/backupdiskimage.h"
#include "wizards/backup/pagebackupdiskimagesource.h"

namespace NVB::GUI {

BackupPlanEditWizard::PageBackupDiskImageSourceView::PageBackupDiskImageSourceView(QWidget* parent)
    : PageBase(tr("Selected Partitions"), parent)
    , m_model(new DiskInfoBackupModel(this))
    , m_view(new DiskInfoBackupViewWidget(this))
{
    setSubTitle(tr("Selected Partitions to backup"));
    m_view->setModel(m_model);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_view);
    connect(m_model, &DiskInfoModel::complite, this, &PageBackupDiskImageSourceView::onComplite);
    connect(m_model, &DiskInfoModel::error, this, &PageBackupDiskImageSourceView::onError);
    connect(m_model, &DiskInfoModel::loaded, this, &PageBackupDiskImageSourceView::onLoaded);
}

void BackupPlanEditWizard::PageBackupDiskImageSourceView::initializePage()
{
    if (!m_model->isLoad()) {
        // Nothing to choose from until the engine answers.
        setEnabled(false);
        m_model->init();
    } else {
        applySourceChoice();
    }
    if (!m_watching) {
        m_watching = true;
        connect(m_model, &QAbstractItemModel::dataChanged, this, &PageBackupDiskImageSourceView::onDataChanged);
    }
    PageBase::initializePage();
}

void BackupPlanEditWizard::PageBackupDiskImageSourceView::applySourceChoice()
{
    if (field(QLatin1String(PageBackupDiskImageSource::Field_AllDrives)).toBool())
        m_model->selectAllDrives();
    else if (field(QLatin1String(PageBackupDiskImageSource::Field_SystemRequire)).toBool())
        m_model->selectSystemRequired();
}

void BackupPlanEditWizard::PageBackupDiskImageSourceView::onComplite()
{
    setEnabled(true);
    // An edited plan shows the disks it was saved with; that load answers
    // with complite() again, so the kept record is handed over only once.
    if (const auto kept = std::exchange(m_diskInfo, {})) {
        m_model->initFromDiskInfo(kept);
        return;
    }
    applySourceChoice();
    emit completeChanged();
}

void BackupPlanEditWizard::PageBackupDiskImageSourceView::onError(const QString& text)
{
    setEnabled(true);
    QMessageBox::warning(this, tr("Error on load DiskInfo"), text);
    emit completeChanged();
}

void BackupPlanEditWizard::PageBackupDiskImageSourceView::onLoaded()
{
    m_view->view()->setEnabled(true);
}

void BackupPlanEditWizard::PageBackupDiskImageSourceView::onDataChanged()
{
    // A change in the tree moves the earlier page's choice with it.
    const bool all = m_model->isAllDrivesSelected();
    setField(QLatin1String(PageBackupDiskImageSource::Field_AllDrives), all);
    setField(QLatin1String(PageBackupDiskImageSource::Field_SelectedOnly), !all);
    emit completeChanged();
}

bool BackupPlanEditWizard::PageBackupDiskImageSourceView::isComplete() const
{
    return m_view->isComplete();
}

int BackupPlanEditWizard::PageBackupDiskImageSourceView::nextId() const
{
    return PageBackupDiskImageAdvancedOptionsId;
}

QString BackupPlanEditWizard::PageBackupDiskImageSourceView::summary()
{
    QString rows = headingRow(tr("Backup partitions:"));
    const auto info = m_model->diskInfo();
    if (!info)
        return rows;
    int number = 0;
    for (const auto& disk : info->disks()) {
        ++number;
        QString volumes;
        for (const auto& volume : disk.volumes()) {
            if (!volume.isEnabled())
                continue;
            const QString name = volume.label().isEmpty() ? volume.deviceName() : volume.label();
            volumes += QStringLiteral("<tr><td></td><td>%1 [ %2 / %3 ]</td></tr>")
                           .arg(name.toHtmlEscaped(), volume.fileSystemType().toHtmlEscaped(),
                               QLocale().formattedDataSize(volume.length()));
        }
        if (disk.isEnabled() || !volumes.isEmpty())
            rows += detailRow(QStringLiteral("<b>%1</b>").arg(DiskInfoModel::diskName(disk, number).toHtmlEscaped()))
                + volumes;
    }
    return rows;
}

bool BackupPlanEditWizard::PageBackupDiskImageSourceView::initPlan(NVB::Info::Plan::Base* plan)
{
    auto* image = dynamic_cast<NVB::Info::Plan::BackupDiskImage*>(plan);
    if (!image || !m_model->isLoad())
        return false;
    image->setDiskInfo(m_model->diskInfo());
    return true;
}

bool BackupPlanEditWizard::PageBackupDiskImageSourceView::fromPlan(NVB::Info::Plan::Base* plan)
{
    const auto* image = dynamic_cast<const NVB::Info::Plan::BackupDiskImage*>(plan);
    if (!image)
        return false;
    m_diskInfo = image->diskInfo();
    return true;
}

} // namespace NVB::GUI
