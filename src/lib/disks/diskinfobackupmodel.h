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
