#pragma once

#include "diskinfomodel.h"

namespace NVB::GUI {

// The disks offered to a disk image backup, with sizes as text and the
// selection a plan keeps.
class DiskInfoBackupModel : public DiskInfoModel
{
    Q_OBJECT

public:
    using DiskInfoModel::DiskInfoModel;

    // Lays a plan's saved choice over the machine's disks once they are
    // loaded (disks and volumes matched by id; those gone since are
    // dropped); before that, shows `info` itself.
    void initFromDiskInfo(const QSharedPointer<NVB::Info::DiskInfo>& info);

    void selectAllDrives();
    void selectSystemRequired();
    bool isAllDrivesSelected() const;

protected:
    QVariant diskData(const QModelIndex& index, int role) const override;
    QVariant volumeData(const QModelIndex& index, int role) const override;

private:
    void announceAll();
};

} // namespace NVB::GUI
