#include "volumesnapshot.h"

#include <sys/stat.h>

#include <libmount.h>

#include <QFile>
#include <QFileInfo>
#include <QStringList>

namespace NVB::Engine {

VolumeSnapshot::Answer VolumeSnapshot::forDevice(const QString& device, const QString& sysRoot)
{
    Answer answer;
    const QString name = QFileInfo(QFileInfo(device).canonicalFilePath()).fileName();
    QFile uuid(QStringLiteral("%1/class/block/%2/dm/uuid").arg(sysRoot, name));
    if (uuid.open(QIODevice::ReadOnly) && uuid.readAll().startsWith("LVM-")) {
        answer.available = true;
        answer.type = QStringLiteral("lvm");
        return answer;
    }
    answer.message = QStringLiteral("Snapshots are not available for %1: it is not an LVM logical volume").arg(device);
    return answer;
}

QStringList VolumeSnapshot::mountPoints(const QString& device, bool* readOnly, const QString& mountInfo)
{
    QStringList points;
    bool allReadOnly = true;
    struct stat wanted
    {
    };
    const bool haveDevice = ::stat(QFile::encodeName(device).constData(), &wanted) == 0 && S_ISBLK(wanted.st_mode);
    libmnt_table* table = mnt_new_table_from_file(QFile::encodeName(mountInfo).constData());
    libmnt_iter* it = table ? mnt_new_iter(MNT_ITER_FORWARD) : nullptr;
    libmnt_fs* fs = nullptr;
    while (it && mnt_table_next_fs(table, it, &fs) == 0) {
        // Compared by device number as well, so that /dev/mapper names and
        // links to the device are recognised.
        const bool sameSource = mnt_fs_streq_srcpath(fs, QFile::encodeName(device).constData());
        const bool sameDevice = haveDevice && mnt_fs_get_devno(fs) == wanted.st_rdev;
        if (!sameSource && !sameDevice)
            continue;
        points << QFile::decodeName(mnt_fs_get_target(fs));
        const char* options = mnt_fs_get_vfs_options(fs);
        char* value = nullptr;
        size_t size = 0;
        if (!options || mnt_optstr_get_option(options, "ro", &value, &size) != 0)
            allReadOnly = false;
    }
    mnt_free_iter(it);
    mnt_unref_table(table);
    if (readOnly)
        *readOnly = !points.isEmpty() && allReadOnly;
    return points;
}

} // namespace NVB::Engine
