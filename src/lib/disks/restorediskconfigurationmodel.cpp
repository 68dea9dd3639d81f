#include "restorediskconfigurationmodel.h"

#include "models/models.h"

namespace NVB::GUI {

namespace Info = Models::Table::NvbRestoreDiskConfigurationModel;

RestoreDiskConfigurationModel::RestoreDiskConfigurationModel(QObject* parent)
    : QAbstractItemModel(parent)
{
    setObjectName(Info::Type);
}

QString RestoreDiskConfigurationModel::Value(const QUuid& diskId, const QUuid& volumeId)
{
    return QStringLiteral("%1|%2").arg(diskId.toString(), volumeId.toString());
}

QPair<QUuid, QUuid> RestoreDiskConfigurationModel::fromValue(const QVariant& value)
{
    const QStringList parts = value.toString().split(QLatin1Char('|'));
    if (parts.size() != 2)
        return {};
    return {QUuid(parts.at(0)), QUuid(parts.at(1))};
}

void RestoreDiskConfigurationModel::init(const QSharedPointer<NVB::Info::RestoreDiskConfiguration>& configuration)
{
    beginResetModel();
    m_configuration = configuration;
    m_rows.clear();
    if (m_configuration) {
        for (int disk = 0; disk < m_configuration->disks().size(); ++disk) {
            for (int volume = 0; volume < m_configuration->disks().at(disk).volumes().size(); ++volume)
                m_rows.append({disk, volume});
        }
    }
    endResetModel();
}

NVB::Info::RestoreDiskConfigurationVolume* RestoreDiskConfigurationModel::volumeAt(int row) const
{
    if (!m_configuration || row < 0 || row >= m_rows.size())
        return nullptr;
    return &m_configuration->disks()[m_rows.at(row).first].volumes()[m_rows.at(row).second];
}

QModelIndex RestoreDiskConfigurationModel::index(int row, int column, const QModelIndex& parent) const
{
    return hasIndex(row, column, parent) ? createIndex(row, column) : QModelIndex();
}

QModelIndex RestoreDiskConfigurationModel::parent(const QModelIndex&) const
{
    return {};
}

int RestoreDiskConfigurationModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_rows.size();
}

int RestoreDiskConfigurationModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : Info::Column::Count;
}

QVariant RestoreDiskConfigurationModel::data(const QModelIndex& index, int role) const
{
    const auto* volume = index.isValid() ? volumeAt(index.row()) : nullptr;
    if (!volume || role != Qt::DisplayRole)
        return {};
    switch (index.column()) {
    case Info::Column::Source:
        return Value(volume->sourceDiskId(), volume->sourceIdentity());
    case Info::Column::Destination:
        return volume->isDestinationEnabled()
            ? QVariant(Value(volume->destinationDiskId(), volume->destinationIdentity()))
            : QVariant();
    case Info::Column::Length:
        return volume->length();
    default:
        return {};
    }
}

bool RestoreDiskConfigurationModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    auto* volume = index.isValid() && index.column() == Info::Column::Destination && role == Qt::EditRole
        ? volumeAt(index.row())
        : nullptr;
    if (!volume)
        return false;
    const auto [disk, identity] = fromValue(value);
    volume->setDestinationDiskId(disk);
    volume->setDestinationIdentity(identity);
    volume->setDestinationEnable(!disk.isNull());
    emit dataChanged(index, index, {role, Qt::DisplayRole});
    return true;
}

QVariant RestoreDiskConfigurationModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case Info::Column::Source:
        return Info::Name::Source;
    case Info::Column::Destination:
        return Info::Name::Destination;
    case Info::Column::Length:
        return Info::Name::Length;
    default:
        return {};
    }
}

} // namespace NVB::GUI
