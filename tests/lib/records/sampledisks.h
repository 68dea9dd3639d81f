#pragma once

#include <QSharedPointer>

#include "records/disk/diskinfo.h"

// A machine of two disks with every field set away from its default, for
// round trips of the records that embed disks.
inline QSharedPointer<NVB::Info::DiskInfo> sampleDiskInfo()
{
    auto info = QSharedPointer<NVB::Info::DiskInfo>::create();
    for (int d = 0; d < 2; ++d) {
        NVB::Info::DiskInfo::Disk disk;
        disk.setDiskId(QUuid::createUuid());
        disk.setDeviceName(QStringLiteral("/dev/sd%1").arg(QChar('a' + d)));
        disk.setModel(d == 0 ? QStringLiteral("Fast & <Reliable> SSD") : QString());
        disk.setCapacity(512110190592LL + d);
        disk.setPartitionTableType(d == 0 ? NVB::Info::DiskInfo::Disk::Gpt : NVB::Info::DiskInfo::Disk::Mbr);
        disk.setEnabled(d == 0);
        for (int v = 0; v < 2; ++v) {
            NVB::Info::DiskInfo::Volume volume;
            volume.setIdentity(QUuid::createUuid());
            volume.setDiskId(disk.diskId());
            volume.setDeviceName(disk.deviceName() + QString::number(v + 1));
            volume.setLabel(QStringLiteral("Volume \"%1\"").arg(v));
            volume.setFileSystemType(v == 0 ? QStringLiteral("vfat") : QStringLiteral("ext4"));
            volume.setType(QUuid::createUuid());
            volume.setBiosType(v == 0 ? 0xef : 0x83);
            volume.setBiosIsActive(v == 0);
            volume.setIsBoot(v == 0);
            volume.setLength(1048576LL * (v + 100));
            volume.setUsedSpace(4096LL * (v + 7));
            volume.setExtentStartOffset(2048LL * 512 * (v + 1));
            volume.setMountPoints(v == 0 ? QStringList {QStringLiteral("/boot/efi")}
                                         : QStringList {QStringLiteral("/"), QStringLiteral("/mnt/root")});
            volume.setRequiredBySystem(v == 0);
            volume.setEnabled(v == 1);
            disk.volumes().append(volume);
        }
        info->disks().append(disk);
    }
    return info;
}
