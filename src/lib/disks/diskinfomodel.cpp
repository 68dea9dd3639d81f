#include "diskinfomodel.h"

#include <QColor>
#include <QPixmap>

#include "core/nvldebug.h"
#include "models/models.h"
#include "plans/plancommand.h"
#include "service/commandresult.h"
#include "service/commands/content.h"
#include "service/icommand.h"

namespace NVB::GUI {

using namespace NVB::Common::Communication;
namespace Info = Models::Tree::NvbDiskInfoModelInfo;
namespace GetDiskInfo = Commands::Format::Content::GetDiskInfo;

namespace {

// The colours that tell volumes apart in the disk map and in the table.
const QColor VolumeColours[] = {QColor(0x1e, 0x88, 0xe5), QColor(0x43, 0xa0, 0x47), QColor(0xfb, 0x8c, 0x00),
    QColor(0x8e, 0x24, 0xaa), QColor(0x00, 0xac, 0xc1), QColor(0xe5, 0x39, 0x35)};

} // namespace

DiskInfoModel::DiskInfoModel(QObject* parent)
    : QAbstractItemModel(parent)
{
    setObjectName(Info::Type);
}

QString DiskInfoModel::diskName(const NVB::Info::DiskInfo::Disk& disk, int number)
{
    if (!disk.deviceName().isEmpty())
        return QStringLiteral("%1 (%2)").arg(disk.deviceName(), disk.model());
    if (!disk.model().isEmpty())
        return disk.model();
    return QStringLiteral("%1 #%2").arg(tr("Disk")).arg(number);
}

void DiskInfoModel::init()
{
    beginResetModel();
    try {
        ICommand* command = PlanCommand::create(QLatin1String(GetDiskInfo::Name));
        connect(command, &ICommand::complite, this, &DiskInfoModel::onGetDiskInfoResult);
        connect(command, &ICommand::error, this, &DiskInfoModel::onGetDiskInfoResult);
        connect(command, &ICommand::timeout, this, &DiskInfoModel::onGetDiskInfoResult);
        PlanCommand::exec(command, {});
        emit loaded();
    } catch (const QString& text) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << text;
        emit error(text);
    }
    endResetModel();
}

void DiskInfoModel::onGetDiskInfoResult()
{
    auto* command = qobject_cast<ICommand*>(sender());
    if (!command)
        return;
    try {
        const QJsonObject data = CommandResult::data(command);
        const auto info
            = NVB::Info::DiskInfo::createFromXml(data.value(QLatin1String(GetDiskInfo::Reply::Key)).toString());
        if (info.isNull())
            throw QStringLiteral("Error on init DiskInfo data");
        setDiskInfo(info);
        emit complite();
    } catch (const QString& text) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << text;
        emit error(text);
    }
    command->deleteLater();
}

void DiskInfoModel::initFromDiskInfo(const QSharedPointer<NVB::Info::DiskInfo>& info)
{
    setDiskInfo(info);
    emit complite();
}

void DiskInfoModel::setDiskInfo(const QSharedPointer<NVB::Info::DiskInfo>& info)
{
    if (m_diskInfo && !m_diskInfo->disks().isEmpty()) {
        beginRemoveRows({}, 0, m_diskInfo->disks().size() - 1);
        m_diskInfo.reset();
        endRemoveRows();
    }
    if (!info || info->disks().isEmpty()) {
        m_diskInfo = info;
        return;
    }
    beginInsertRows({}, 0, info->disks().size() - 1);
    m_diskInfo = info;
    endInsertRows();
}

const NVB::Info::DiskInfo::Disk* DiskInfoModel::diskAt(int row) const
{
    if (!m_diskInfo || row < 0 || row >= m_diskInfo->disks().size())
        return nullptr;
    return &m_diskInfo->disks().at(row);
}

const NVB::Info::DiskInfo::Volume* DiskInfoModel::volumeAt(const QModelIndex& index) const
{
    if (!index.isValid() || index.internalId() == 0)
        return nullptr;
    const auto* disk = diskAt(int(index.internalId()) - 1);
    if (!disk || index.row() < 0 || index.row() >= disk->volumes().size())
        return nullptr;
    return &disk->volumes().at(index.row());
}

QModelIndex DiskInfoModel::index(int row, int column, const QModelIndex& parent) const
{
    if (!hasIndex(row, column, parent))
        return {};
    return createIndex(row, column, parent.isValid() ? quintptr(parent.row() + 1) : quintptr(0));
}

QModelIndex DiskInfoModel::parent(const QModelIndex& index) const
{
    if (!index.isValid() || index.internalId() == 0)
        return {};
    return createIndex(int(index.internalId()) - 1, 0, quintptr(0));
}

int DiskInfoModel::rowCount(const QModelIndex& parent) const
{
    if (!m_diskInfo)
        return 0;
    if (!parent.isValid())
        return m_diskInfo->disks().size();
    if (parent.internalId() != 0 || parent.column() != 0)
        return 0;
    const auto* disk = diskAt(parent.row());
    return disk ? disk->volumes().size() : 0;
}

int DiskInfoModel::columnCount(const QModelIndex&) const
{
    return Info::Column::Count;
}

QVariant DiskInfoModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    return index.internalId() == 0 ? diskData(index, role) : volumeData(index, role);
}

QVariant DiskInfoModel::diskData(const QModelIndex& index, int role) const
{
    const auto* disk = diskAt(index.row());
    if (!disk)
        return {};
    if (role == EnabledRole && index.column() == Info::Column::IsEnabled)
        return disk->isEnabled() ? 2 : 0;
    if (role == Qt::CheckStateRole && index.column() == Info::Column::IsEnabled)
        return disk->isEnabled() ? Qt::Checked : Qt::Unchecked;
    if (role != Qt::DisplayRole)
        return {};
    switch (index.column()) {
    case Info::Column::IsEnabled:
        return diskName(*disk, index.row() + 1);
    case Info::Column::Size:
        return disk->capacity();
    case Info::Column::DiskId:
        return disk->diskId();
    default:
        return {};
    }
}

QVariant DiskInfoModel::volumeData(const QModelIndex& index, int role) const
{
    const auto* volume = volumeAt(index);
    if (!volume)
        return {};
    if (role == EnabledRole && index.column() == Info::Column::IsEnabled)
        return volume->isEnabled() ? 2 : 0;
    if (role == Qt::CheckStateRole && index.column() == Info::Column::IsEnabled)
        return volume->isEnabled() ? Qt::Checked : Qt::Unchecked;
    if (role == Qt::DecorationRole && index.column() == Info::Column::Name) {
        QPixmap swatch(16, 16);
        swatch.fill(VolumeColours[index.row() % int(std::size(VolumeColours))]);
        return swatch;
    }
    if (role != Qt::DisplayRole)
        return {};
    const QString mountPoint = volume->mountPoints().value(0);
    switch (index.column()) {
    case Info::Column::IsEnabled:
        return mountPoint.isEmpty() ? volume->label() : mountPoint;
    case Info::Column::Name:
        return volume->label();
    case Info::Column::Size:
        return volume->length();
    case Info::Column::Used:
        return volume->usedSpace();
    case Info::Column::FS:
        return volume->fileSystemType();
    case Info::Column::Label:
        return volume->label();
    case Info::Column::DiskId:
        return volume->diskId();
    case Info::Column::VolumeId:
        return volume->identity();
    case Info::Column::MountPoint:
        return mountPoint;
    default:
        return {};
    }
}

bool DiskInfoModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (!index.isValid() || index.column() != Info::Column::IsEnabled
        || (role != EnabledRole && role != Qt::CheckStateRole))
        return false;
    if (index.internalId() == 0) {
        if (!diskAt(index.row()))
            return false;
        m_diskInfo->disks()[index.row()].setEnabled(value.toInt() == 2);
    } else {
        if (!volumeAt(index))
            return false;
        // A volume takes the value as a flag: true, or a check state of 2.
        m_diskInfo->disks()[int(index.internalId()) - 1].volumes()[index.row()].setEnabled(value.toBool());
    }
    emit dataChanged(index, index, {role, EnabledRole, Qt::CheckStateRole});
    return true;
}

QVariant DiskInfoModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    const QString* names[] = {&Info::Name::IsEnabled, &Info::Name::Name, &Info::Name::Size, &Info::Name::Used,
        &Info::Name::FS, &Info::Name::Label, &Info::Name::DiskId, &Info::Name::VolumeId, &Info::Name::MountPoint};
    return section >= 0 && section < Info::Column::Count ? QVariant(*names[section]) : QVariant();
}

Qt::ItemFlags DiskInfoModel::flags(const QModelIndex& index) const
{
    Qt::ItemFlags result = QAbstractItemModel::flags(index);
    if (index.isValid() && index.column() == Info::Column::IsEnabled)
        result |= Qt::ItemIsUserCheckable | Qt::ItemIsEnabled;
    return result;
}

} // namespace NVB::GUI
