#include "diskinforestoremodel.h"

#include "core/nvldebug.h"
#include "models/models.h"
#include "plans/plancommand.h"
#include "records/disk/diskimagemetadata.h"
#include "service/commandresult.h"
#include "service/commands/content.h"
#include "service/icommand.h"

namespace NVB::GUI {

using namespace NVB::Common::Communication;
namespace Info = Models::Tree::NvbDiskInfoModelInfo;
namespace ImageContent = Commands::Format::Content::GetDiskImageContent;

void DiskInfoRestoreModel::init()
{
    beginResetModel();
    try {
        QJsonObject params {{QLatin1String(ImageContent::Request::DestinationId), m_destinationId.toString()}};
        namespace Time = ImageContent::Request::SpecifiedTime;
        if (m_pointInTime.isValid()) {
            params.insert(QLatin1String(Time::Key), QLatin1String(Time::Value::PointInTime));
            params.insert(QLatin1String(Time::PointInTimeValue), m_pointInTime.toString(Qt::ISODate));
        } else {
            params.insert(QLatin1String(Time::Key), QLatin1String(Time::Value::LatestVersion));
        }
        ICommand* command = PlanCommand::create(QLatin1String(ImageContent::Name));
        connect(command, &ICommand::complite, this, &DiskInfoRestoreModel::onContentResult);
        connect(command, &ICommand::error, this, &DiskInfoRestoreModel::onContentResult);
        connect(command, &ICommand::timeout, this, &DiskInfoRestoreModel::onContentResult);
        PlanCommand::exec(command, params);
        emit loaded();
    } catch (const QString& text) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << text;
        emit error(text);
    }
    endResetModel();
}

void DiskInfoRestoreModel::onContentResult()
{
    auto* command = qobject_cast<ICommand*>(sender());
    if (!command)
        return;
    try {
        const QJsonObject data = CommandResult::data(command);
        const auto meta = NVB::Info::DiskImageMetaData::createFromXml(
            data.value(QLatin1String(ImageContent::Reply::Key)).toString());
        if (!meta)
            throw QStringLiteral("DiskImageMetaData is Empty");
        if (!meta->diskInfo())
            throw QStringLiteral("DiskImageMetaData: diskInfo is Empty");
        m_configuration = NVB::Info::RestoreDiskConfiguration::createFromDiskInfo(meta->diskInfo());
        setDiskInfo(meta->diskInfo());
        emit complite();
    } catch (const QString& text) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << text;
        emit error(text);
    }
    command->deleteLater();
}

void DiskInfoRestoreModel::initRestoreDiskConfiguration(
    const QSharedPointer<NVB::Info::RestoreDiskConfiguration>& configuration)
{
    if (!m_configuration || !configuration)
        return;
    m_configuration->setOptions(configuration);
    if (const int disks = rowCount())
        emit dataChanged(index(0, 0), index(disks - 1, Info::Column::Count - 1));
    for (int row = 0; row < rowCount(); ++row) {
        const QModelIndex disk = index(row, 0);
        if (const int volumes = rowCount(disk))
            emit dataChanged(index(0, 0, disk), index(volumes - 1, 0, disk));
    }
}

NVB::Info::RestoreDiskConfiguration::Volume* DiskInfoRestoreModel::configVolume(const QModelIndex& index) const
{
    const auto* volume = volumeAt(index);
    if (!volume || !m_configuration)
        return nullptr;
    for (auto& disk : m_configuration->disks()) {
        for (auto& candidate : disk.volumes()) {
            if (candidate.sourceDiskId() == volume->diskId() && candidate.sourceIdentity() == volume->identity())
                return &candidate;
        }
    }
    return nullptr;
}

int DiskInfoRestoreModel::diskState(int row) const
{
    return DiskInfoModel::data(index(row, Info::Column::IsEnabled), EnabledRole).toInt();
}

QVariant DiskInfoRestoreModel::data(const QModelIndex& index, int role) const
{
    const bool check = index.isValid() && index.column() == Info::Column::IsEnabled
        && (role == EnabledRole || role == Qt::CheckStateRole);
    if (!check)
        return DiskInfoModel::data(index, role);
    int state = 0;
    if (index.internalId() != 0) {
        const auto* volume = configVolume(index);
        if (!volume)
            return {};
        state = volume->isSourceEnabled() ? 2 : 0;
    } else if (!diskAt(index.row())) {
        return {};
    }
    return role == EnabledRole ? QVariant(state) : QVariant(state == 2 ? Qt::Checked : Qt::Unchecked);
}

bool DiskInfoRestoreModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (!index.isValid() || index.column() != Info::Column::IsEnabled
        || (role != EnabledRole && role != Qt::CheckStateRole))
        return false;
    if (index.internalId() != 0) {
        auto* volume = configVolume(index);
        if (!volume)
            return false;
        volume->setSourceEnabled(value.toInt() == 2 || (value.type() == QVariant::Bool && value.toBool()));
    } else if (!diskAt(index.row())) {
        return false;
    }
    emit dataChanged(index, index, {role, EnabledRole, Qt::CheckStateRole});
    return true;
}

Qt::ItemFlags DiskInfoRestoreModel::flags(const QModelIndex& index) const
{
    Qt::ItemFlags result = DiskInfoModel::flags(index);
    if (!index.isValid())
        return result;
    // What the image did not take cannot be restored.
    const int diskRow = index.internalId() == 0 ? index.row() : int(index.internalId()) - 1;
    if (diskState(diskRow) == 0) {
        result &= ~Qt::ItemIsUserCheckable;
        if (index.column() != Info::Column::IsEnabled)
            result &= ~Qt::ItemIsEnabled;
    }
    return result;
}

QSharedPointer<NVB::Info::DiskImageRestoreConfiguration> DiskInfoRestoreModel::diskImageRestoreConfiguration(
    NVB::Info::DiskImageRestoreConfiguration::Type type) const
{
    using Layout = NVB::Info::DiskImageRestoreConfiguration;
    auto layout = QSharedPointer<Layout>::create(type);
    if (!m_configuration || !diskInfo() || type == Layout::VirtualDisk)
        return layout;
    for (const auto& chosen : m_configuration->disks()) {
        if (chosen.destinationDiskId().isNull())
            continue;
        const auto source = diskInfo()->diskById(chosen.sourceDiskId());
        auto disk = QSharedPointer<Layout::Disk>::create();
        disk->setId(chosen.destinationDiskId());
        disk->setSourceId(chosen.sourceDiskId());
        disk->setBootLoader(Layout::Disk::Bios);
        disk->setCapacity(source.capacity());
        disk->setPartitionTableType(source.partitionTableType());
        if (type == Layout::PhysicalDisk) {
            for (const auto& volume : source.volumes()) {
                if (!volume.isEnabled())
                    continue;
                auto made = QSharedPointer<Layout::Volume>::create();
                made->setId(volume.identity());
                made->setSourceDiskId(volume.diskId());
                made->setSourceVolumeId(volume.identity());
                made->setLength(volume.length());
                made->setStartOffset(volume.extentStartOffset());
                made->setIsBoot(volume.isBoot());
                made->setBiosType(volume.biosType());
                made->setBiosIsActive(volume.biosIsActive());
                made->setGptType(volume.type());
                made->setFileSystem(volume.fileSystemType());
                disk->addVolume(made);
            }
        }
        layout->addDisk(disk);
    }
    return layout;
}

bool DiskInfoRestoreModel::hasVolumeChecked() const
{
    if (!m_configuration)
        return false;
    for (const auto& disk : m_configuration->disks()) {
        if (disk.isVolumeEnabled())
            return true;
    }
    return false;
}

bool DiskInfoRestoreModel::hasDiskChecked() const
{
    if (!m_configuration)
        return false;
    for (const auto& disk : m_configuration->disks()) {
        if (!disk.destinationDiskId().isNull())
            return true;
    }
    return false;
}

} // namespace NVB::GUI
