#include "diskscanner.h"

#include <sys/statvfs.h>

#include <blkid.h>
#include <libmount.h>

#include <QDir>
#include <QFile>
#include <QMap>

namespace NVB::Engine {

namespace {

// Names of ids made from device names.
const QUuid IdSpace(QStringLiteral("{6c1e1d1a-6f3b-4d5e-9a56-0f9d1b8e2a18}"));

QString readText(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll()).trimmed();
}

qint64 readNumber(const QString& path)
{
    bool ok = false;
    const qint64 value = readText(path).toLongLong(&ok);
    return ok ? value : -1;
}

// What libblkid finds on a device: its file system, or its partition table.
struct Probe
{
    QString type;
    QString label;
    QString uuid;
    QString partitionTable; // "dos", "gpt" or empty
    QString partitionType; // GPT type GUID or MBR type number
};

Probe probe(const QString& device)
{
    Probe result;
    blkid_probe pr = blkid_new_probe_from_filename(QFile::encodeName(device).constData());
    if (!pr)
        return result;
    blkid_probe_enable_superblocks(pr, 1);
    blkid_probe_set_superblocks_flags(pr, BLKID_SUBLKS_LABEL | BLKID_SUBLKS_UUID | BLKID_SUBLKS_TYPE);
    blkid_probe_enable_partitions(pr, 1);
    blkid_probe_set_partitions_flags(pr, BLKID_PARTS_ENTRY_DETAILS);
    if (blkid_do_safeprobe(pr) == 0) {
        const char* value = nullptr;
        const auto text = [&](const char* name) {
            return blkid_probe_lookup_value(pr, name, &value, nullptr) == 0 ? QString::fromUtf8(value) : QString();
        };
        result.type = text("TYPE");
        result.label = text("LABEL");
        result.uuid = text("UUID");
        result.partitionTable = text("PTTYPE");
        result.partitionType = text("PART_ENTRY_TYPE");
    }
    blkid_free_probe(pr);
    return result;
}

// Every mount point of each source device, in mount order.
QMap<QString, QStringList> mountPoints(const QString& mountInfo)
{
    QMap<QString, QStringList> result;
    libmnt_table* table = mnt_new_table_from_file(QFile::encodeName(mountInfo).constData());
    if (!table)
        return result;
    libmnt_iter* it = mnt_new_iter(MNT_ITER_FORWARD);
    libmnt_fs* fs = nullptr;
    while (it && mnt_table_next_fs(table, it, &fs) == 0) {
        const char* source = mnt_fs_get_srcpath(fs);
        const char* target = mnt_fs_get_target(fs);
        if (source && target && source[0] == '/')
            result[QFile::decodeName(source)].append(QFile::decodeName(target));
    }
    mnt_free_iter(it);
    mnt_unref_table(table);
    return result;
}

qint64 usedSpace(const QStringList& points)
{
    struct statvfs info
    {
    };
    if (points.isEmpty() || ::statvfs(QFile::encodeName(points.first()).constData(), &info) != 0)
        return -1;
    return qint64(info.f_blocks - info.f_bfree) * qint64(info.f_frsize);
}

} // namespace

DiskScanner::DiskScanner(const QString& sysRoot, const QString& mountInfo)
    : m_sysRoot(sysRoot)
    , m_mountInfo(mountInfo)
{ }

QUuid DiskScanner::diskIdFor(const QString& deviceName)
{
    return QUuid::createUuidV5(IdSpace, QStringLiteral("disk:") + deviceName);
}

QUuid DiskScanner::volumeIdFor(const QString& deviceName)
{
    return QUuid::createUuidV5(IdSpace, QStringLiteral("volume:") + deviceName);
}

QSharedPointer<NVB::Info::DiskInfo> DiskScanner::scan() const
{
    auto info = QSharedPointer<NVB::Info::DiskInfo>::create();
    const QMap<QString, QStringList> mounts = mountPoints(m_mountInfo);
    const QDir block(m_sysRoot + QStringLiteral("/block"));
    for (const QString& name : block.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
        const QString folder = block.filePath(name);
        const qint64 sectors = readNumber(folder + QStringLiteral("/size"));
        // Empty loop devices, RAM disks and optical drives without media
        // hold nothing to image.
        if (sectors <= 0 || name.startsWith(QLatin1String("ram")) || name.startsWith(QLatin1String("zram")))
            continue;
        NVB::Info::DiskInfo::Disk disk;
        disk.setDiskId(diskIdFor(name));
        disk.setDeviceName(name);
        QString model = readText(folder + QStringLiteral("/device/model"));
        if (model.isEmpty() && name.startsWith(QLatin1String("loop")))
            model = readText(folder + QStringLiteral("/loop/backing_file"));
        disk.setModel(model);
        disk.setCapacity(sectors * 512); // sysfs counts 512-byte sectors whatever the device's own
        const QString device = QStringLiteral("/dev/") + name;
        const Probe whole = probe(device);
        disk.setPartitionTableType(whole.partitionTable == QLatin1String("gpt") ? NVB::Info::DiskInfo::Disk::Gpt
                : whole.partitionTable == QLatin1String("dos")                  ? NVB::Info::DiskInfo::Disk::Mbr
                                                                                : NVB::Info::DiskInfo::Disk::None);
        const auto addVolume = [&](const QString& volumeName, qint64 start, qint64 length, const Probe& found) {
            NVB::Info::DiskInfo::Volume volume;
            const QUuid fsId(found.uuid);
            volume.setIdentity(fsId.isNull() ? volumeIdFor(volumeName) : fsId);
            volume.setDiskId(disk.diskId());
            volume.setDeviceName(volumeName);
            volume.setLabel(found.label);
            volume.setFileSystemType(found.type);
            volume.setType(QUuid(found.partitionType));
            volume.setBiosType(uchar(found.partitionType.toUInt(nullptr, 16)));
            volume.setExtentStartOffset(start);
            volume.setLength(length);
            const QStringList points = mounts.value(QStringLiteral("/dev/") + volumeName);
            volume.setMountPoints(points);
            volume.setUsedSpace(usedSpace(points));
            const bool system = points.contains(QStringLiteral("/")) || points.contains(QStringLiteral("/boot"))
                || points.contains(QStringLiteral("/boot/efi"));
            volume.setRequiredBySystem(system);
            volume.setIsBoot(points.contains(QStringLiteral("/boot")) || points.contains(QStringLiteral("/boot/efi")));
            disk.volumes().append(volume);
        };
        const QDir partitions(folder);
        for (const QString& part : partitions.entryList({name + QLatin1Char('*')}, QDir::Dirs, QDir::Name)) {
            const QString partFolder = partitions.filePath(part);
            if (!QFile::exists(partFolder + QStringLiteral("/partition")))
                continue;
            Probe found = probe(QStringLiteral("/dev/") + part);
            addVolume(part, readNumber(partFolder + QStringLiteral("/start")) * 512,
                readNumber(partFolder + QStringLiteral("/size")) * 512, found);
        }
        // A file system straight on the device is its one volume.
        if (disk.volumes().isEmpty() && !whole.type.isEmpty())
            addVolume(name, 0, disk.capacity(), whole);
        info->disks().append(disk);
    }
    return info;
}

} // namespace NVB::Engine
