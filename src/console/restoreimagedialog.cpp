#include "restoreimagedialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QTreeView>
#include <QVBoxLayout>

#include "disks/diskinfomodel.h"
#include "disks/diskinforestoremodel.h"
#include "models/models.h"
#include "plans/planeditwait.h"
#include "records/plan/restorediskimage.h"

namespace NVB::Console {

namespace Column = NVB::GUI::Models::Tree::NvbDiskInfoModelInfo::Column;

RestoreImageDialog::RestoreImageDialog(
    const QUuid& backupPlanId, const QUuid& storageId, const QString& planName, QWidget* parent)
    : QDialog(parent)
    , m_backupPlanId(backupPlanId)
    , m_storageId(storageId)
    , m_planName(planName)
    , m_image(new NVB::GUI::DiskInfoRestoreModel(this))
    , m_machine(new NVB::GUI::DiskInfoModel(this))
    , m_view(new QTreeView(this))
    , m_target(new QComboBox(this))
    , m_message(new QLabel(this))
{
    setWindowTitle(tr("Restore disk image"));
    m_view->setModel(m_image);
    m_view->setColumnHidden(Column::DiskId, true);
    m_view->setColumnHidden(Column::VolumeId, true);
    m_message->setWordWrap(true);
    m_message->setStyleSheet(QStringLiteral("color: #c62828;"));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    m_restore = buttons->addButton(tr("Restore"), QDialogButtonBox::AcceptRole);
    m_restore->setEnabled(false);
    auto* form = new QFormLayout;
    form->addRow(tr("Restore to:"), m_target);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(tr("Volumes in the newest image of \"%1\":").arg(planName.toHtmlEscaped()), this));
    layout->addWidget(m_view);
    layout->addLayout(form);
    layout->addWidget(new QLabel(tr("Everything on the target is overwritten. It must not be mounted."), this));
    layout->addWidget(m_message);
    layout->addWidget(buttons);

    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_restore, &QPushButton::clicked, this, &RestoreImageDialog::restore);
    const auto showError = [this](const QString& text) { m_message->setText(text); };
    connect(m_image, &NVB::GUI::DiskInfoModel::error, this, showError);
    connect(m_machine, &NVB::GUI::DiskInfoModel::error, this, showError);
    connect(m_image, &NVB::GUI::DiskInfoModel::complite, this, [this] {
        m_view->expandAll();
        updateButton();
    });
    connect(m_image, &QAbstractItemModel::dataChanged, this, &RestoreImageDialog::updateButton);
    connect(m_machine, &NVB::GUI::DiskInfoModel::complite, this, &RestoreImageDialog::fillTargets);
    connect(m_target, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &RestoreImageDialog::updateButton);
    m_image->setDestinationId(backupPlanId);
    m_image->init();
    m_machine->init();
}

void RestoreImageDialog::fillTargets()
{
    m_target->clear();
    const auto info = m_machine->diskInfo();
    if (!info)
        return;
    // Volumes by their ids; a disk without volumes (a blank one) as a whole.
    for (const auto& disk : info->disks()) {
        for (const auto& volume : disk.volumes()) {
            const QString mounted = volume.mountPoints().isEmpty()
                ? QString()
                : tr(" (mounted on %1)").arg(volume.mountPoints().join(QStringLiteral(", ")));
            m_target->addItem(QStringLiteral("/dev/%1 %2 %3%4")
                                  .arg(volume.deviceName(), volume.fileSystemType(),
                                      QLocale().formattedDataSize(volume.length()), mounted),
                QStringList {disk.diskId().toString(), volume.identity().toString()});
        }
        if (disk.volumes().isEmpty())
            m_target->addItem(
                QStringLiteral("/dev/%1 %2").arg(disk.deviceName(), QLocale().formattedDataSize(disk.capacity())),
                QStringList {disk.diskId().toString(), QString()});
    }
    updateButton();
}

void RestoreImageDialog::updateButton()
{
    int chosen = 0;
    if (const auto configuration = m_image->restoreDiskConfiguration()) {
        for (const auto& disk : configuration->disks()) {
            for (const auto& volume : disk.volumes())
                chosen += volume.isSourceEnabled() ? 1 : 0;
        }
    }
    m_restore->setEnabled(chosen == 1 && m_target->currentIndex() >= 0);
    if (chosen > 1)
        m_message->setText(tr("Choose one volume to restore at a time."));
}

void RestoreImageDialog::restore()
{
    const auto configuration = m_image->restoreDiskConfiguration();
    const QStringList target = m_target->currentData().toStringList();
    if (!configuration || target.size() != 2)
        return;
    for (auto& disk : configuration->disks()) {
        for (auto& volume : disk.volumes()) {
            if (!volume.isSourceEnabled())
                continue;
            volume.setDestinationDiskId(QUuid(target.at(0)));
            volume.setDestinationIdentity(QUuid(target.at(1)));
            volume.setDestinationEnable(true);
            disk.setDestinationDiskId(QUuid(target.at(0)));
        }
    }
    NVB::Info::Plan::RestoreDiskImage plan;
    plan.setId(QUuid::createUuid());
    plan.setName(tr("Restore %1").arg(m_planName));
    plan.setStorage(m_storageId);
    plan.setRestorePoint(QStringLiteral("NVB_Archive\\%1\\latest").arg(m_backupPlanId.toString(QUuid::WithoutBraces)));
    plan.setRestoreDiskConfiguration(configuration);
    plan.setDiskInfo(m_image->diskInfo());
    NVB::GUI::PlanEditWait wait(false, this);
    wait.setPlan(plan.id(), plan.toXml(), true);
    if (wait.result() != QDialog::Accepted) {
        m_message->setText(tr("The engine did not take the restore plan."));
        return;
    }
    m_restorePlanId = plan.id();
    accept();
}

} // namespace NVB::Console
