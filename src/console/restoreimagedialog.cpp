#include "restoreimagedialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSet>
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
    , m_targetLabel(new QLabel(tr("Restore to:"), this))
    , m_target(new QComboBox(this))
    , m_assignments(new QLabel(this))
    , m_password(new QLineEdit(this))
    , m_message(new QLabel(this))
{
    setWindowTitle(tr("Restore disk image"));
    m_view->setModel(m_image);
    m_view->setColumnHidden(Column::DiskId, true);
    m_view->setColumnHidden(Column::VolumeId, true);
    m_password->setEchoMode(QLineEdit::Password);
    m_password->setPlaceholderText(tr("Only for an image made with encryption"));
    m_assignments->setWordWrap(true);
    m_message->setWordWrap(true);
    m_message->setStyleSheet(QStringLiteral("color: #c62828;"));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    m_restore = buttons->addButton(tr("Restore"), QDialogButtonBox::AcceptRole);
    m_restore->setEnabled(false);
    auto* form = new QFormLayout;
    form->addRow(m_targetLabel, m_target);
    form->addRow(tr("Encryption password:"), m_password);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(tr("Volumes in the newest image of \"%1\":").arg(planName.toHtmlEscaped()), this));
    layout->addWidget(m_view);
    layout->addLayout(form);
    layout->addWidget(m_assignments);
    layout->addWidget(new QLabel(tr("Everything on the targets is overwritten. They must not be mounted."), this));
    layout->addWidget(m_message);
    layout->addWidget(buttons);

    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_restore, &QPushButton::clicked, this, &RestoreImageDialog::restore);
    const auto showError = [this](const QString& text) { m_message->setText(text); };
    connect(m_image, &NVB::GUI::DiskInfoModel::error, this, showError);
    connect(m_machine, &NVB::GUI::DiskInfoModel::error, this, showError);
    connect(m_image, &NVB::GUI::DiskInfoModel::complite, this, [this] {
        m_view->expandAll();
        showEditedTarget();
    });
    connect(m_image, &QAbstractItemModel::dataChanged, this, &RestoreImageDialog::showEditedTarget);
    connect(
        m_view->selectionModel(), &QItemSelectionModel::currentChanged, this, &RestoreImageDialog::showEditedTarget);
    connect(m_machine, &NVB::GUI::DiskInfoModel::complite, this, &RestoreImageDialog::fillTargets);
    connect(m_target, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &RestoreImageDialog::onTargetChosen);
    m_image->setDestinationId(backupPlanId);
    m_image->init();
    m_machine->init();
}

void RestoreImageDialog::fillTargets()
{
    {
        const QSignalBlocker blocker(m_target);
        m_target->clear();
        const auto info = m_machine->diskInfo();
        // Volumes by their ids; a disk without volumes (a blank one) as a whole.
        for (const auto& disk : info ? info->disks() : QList<NVB::Info::DiskInfo::Disk>()) {
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
    }
    showEditedTarget();
}

QList<RestoreImageDialog::Chosen> RestoreImageDialog::chosenVolumes() const
{
    QList<Chosen> chosen;
    const auto info = m_image->diskInfo();
    for (int row = 0; info && row < m_image->rowCount() && row < info->disks().size(); ++row) {
        const QModelIndex disk = m_image->index(row, 0);
        const auto& volumes = info->disks().at(row).volumes();
        for (int child = 0; child < m_image->rowCount(disk) && child < volumes.size(); ++child) {
            if (m_image->index(child, 0, disk).data(NVB::GUI::DiskInfoModel::EnabledRole).toInt() != Qt::Checked)
                continue;
            const auto& volume = volumes.at(child);
            chosen << Chosen {volume.identity(), volume.deviceName().isEmpty() ? volume.label() : volume.deviceName()};
        }
    }
    return chosen;
}

RestoreImageDialog::Chosen RestoreImageDialog::editedVolume() const
{
    const QList<Chosen> chosen = chosenVolumes();
    const QModelIndex current = m_view->currentIndex();
    if (current.isValid() && current.parent().isValid()) {
        const QUuid id = m_image->index(current.row(), Column::VolumeId, current.parent()).data().value<QUuid>();
        for (const Chosen& volume : chosen) {
            if (volume.volume == id)
                return volume;
        }
    }
    return chosen.isEmpty() ? Chosen {} : chosen.first();
}

void RestoreImageDialog::showEditedTarget()
{
    const Chosen edited = editedVolume();
    m_targetLabel->setText(edited.volume.isNull() ? tr("Restore to:") : tr("Restore %1 to:").arg(edited.name));
    {
        // A volume not yet given a target shows none: nothing is overwritten
        // unless the user picked it.
        const QSignalBlocker blocker(m_target);
        m_target->setCurrentIndex(edited.volume.isNull() ? -1 : m_target->findData(m_targets.value(edited.volume)));
    }
    updateButton();
}

void RestoreImageDialog::onTargetChosen(int index)
{
    const Chosen edited = editedVolume();
    if (edited.volume.isNull())
        return;
    if (index < 0)
        m_targets.remove(edited.volume);
    else
        m_targets.insert(edited.volume, m_target->itemData(index).toStringList());
    updateButton();
}

void RestoreImageDialog::updateButton()
{
    const QList<Chosen> chosen = chosenVolumes();
    QStringList lines;
    QSet<QStringList> used;
    bool complete = !chosen.isEmpty();
    bool shared = false;
    for (const Chosen& volume : chosen) {
        const QStringList target = m_targets.value(volume.volume);
        const int index = target.isEmpty() ? -1 : m_target->findData(target);
        complete = complete && index >= 0;
        shared = shared || (index >= 0 && used.contains(target));
        used.insert(target);
        lines << tr("%1 → %2").arg(volume.name, index >= 0 ? m_target->itemText(index) : tr("no target yet"));
    }
    m_assignments->setText(lines.join(QLatin1Char('\n')));
    m_message->setText(shared ? tr("Two volumes cannot be restored onto the same target.") : QString());
    m_restore->setEnabled(complete && !shared);
}

void RestoreImageDialog::restore()
{
    const auto configuration = m_image->restoreDiskConfiguration();
    if (!configuration)
        return;
    for (auto& disk : configuration->disks()) {
        for (auto& volume : disk.volumes()) {
            if (!volume.isSourceEnabled())
                continue;
            const QStringList target = m_targets.value(volume.sourceIdentity());
            if (target.size() != 2)
                return;
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
    plan.setEncryptionPassword(m_password->text());
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
