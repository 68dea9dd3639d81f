#pragma once

#include <QDateTime>
#include <QSharedPointer>
#include <QUuid>

#include "diskinfomodel.h"
#include "records/disk/diskimagerestoreconfiguration.h"
#include "records/disk/restorediskconfiguration.h"

namespace NVB::GUI {

// The disks and volumes a disk image holds, as the engine describes one of
// its restore points, with the choice of what to restore. Only volumes the
// image took can be chosen.
class DiskInfoRestoreModel : public DiskInfoModel
{
    Q_OBJECT
public:
    using DiskInfoModel::DiskInfoModel;

    // The backup (its plan's id, or an account holding one disk image).
    void setDestinationId(const QUuid& id) { m_destinationId = id; }
    // Invalid: the newest restore point.
    void setPointInTime(const QDateTime& moment) { m_pointInTime = moment; }
    // Asks the engine for the image's content; rows come with complite().
    void init() override;

    QSharedPointer<NVB::Info::RestoreDiskConfiguration> restoreDiskConfiguration() const { return m_configuration; }
    // Lays a stored choice over the loaded image.
    void initRestoreDiskConfiguration(const QSharedPointer<NVB::Info::RestoreDiskConfiguration>& configuration);
    // The layout for the engine: each disk with a destination, with its
    // chosen volumes (none for a virtual machine, whose layout the engine
    // makes).
    QSharedPointer<NVB::Info::DiskImageRestoreConfiguration> diskImageRestoreConfiguration(
        NVB::Info::DiskImageRestoreConfiguration::Type type) const;
    bool hasVolumeChecked() const;
    bool hasDiskChecked() const;

    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    void onContentResult();
    NVB::Info::RestoreDiskConfiguration::Volume* configVolume(const QModelIndex& index) const;
    // Role 10 of a disk as the image has it: 2 when the image took it.
    int diskState(int row) const;

    QUuid m_destinationId;
    QDateTime m_pointInTime;
    QSharedPointer<NVB::Info::RestoreDiskConfiguration> m_configuration;
};

} // namespace NVB::GUI
