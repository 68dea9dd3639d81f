#include "filesystemlisting.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <QJsonObject>
#include <QMutex>
#include <QMutexLocker>
#include <QSet>

#include "core/nvldebug.h"
#include "listing/filesystemobjectitems.h"

namespace NVB {

namespace Items = Constants::SessionAccess::FileSystemObject::Items;

namespace {

const QString VolumesPrefix = QStringLiteral("/NVB_VOLUMES");
const QString SharesPrefix = QStringLiteral("/NVB_SHARES");

const QString DefaultMountTable = QStringLiteral("/proc/self/mountinfo");

// Made on first use, so that no lock exists before main() or after exit().
struct MountTableSetting
{
    QMutex lock;
    QString file = DefaultMountTable;
};

MountTableSetting& mountTableSetting()
{
    static MountTableSetting setting;
    return setting;
}

// Kernel and memory file systems: nothing on them is worth a backup.
bool isPseudoFileSystem(const QString& type)
{
    static const QSet<QString> pseudo {
        QStringLiteral("proc"),
        QStringLiteral("sysfs"),
        QStringLiteral("devtmpfs"),
        QStringLiteral("devpts"),
        QStringLiteral("tmpfs"),
        QStringLiteral("ramfs"),
        QStringLiteral("cgroup"),
        QStringLiteral("cgroup2"),
        QStringLiteral("mqueue"),
        QStringLiteral("debugfs"),
        QStringLiteral("tracefs"),
        QStringLiteral("securityfs"),
        QStringLiteral("pstore"),
        QStringLiteral("bpf"),
        QStringLiteral("autofs"),
        QStringLiteral("hugetlbfs"),
        QStringLiteral("configfs"),
        QStringLiteral("fusectl"),
        QStringLiteral("binfmt_misc"),
        QStringLiteral("efivarfs"),
        QStringLiteral("rpc_pipefs"),
        QStringLiteral("nsfs"),
        QStringLiteral("nfsd"),
        QStringLiteral("selinuxfs"),
        QStringLiteral("fuse.gvfsd-fuse"),
        QStringLiteral("fuse.portal"),
        QStringLiteral("fuse.lxcfs"),
    };
    return pseudo.contains(type);
}

bool isShareFileSystem(const QString& type)
{
    return type == QLatin1String("cifs") || type == QLatin1String("smb3") || type == QLatin1String("smbfs")
        || type == QLatin1String("nfs") || type == QLatin1String("nfs4");
}

bool isSystemMountPoint(const QString& mountPoint)
{
    for (const char* top : {"/proc", "/sys", "/dev", "/run"}) {
        const QLatin1String prefix(top);
        if (mountPoint == prefix || mountPoint.startsWith(prefix + QLatin1Char('/')))
            return true;
    }
    return false;
}

// Fields of mountinfo escape blanks, tabs, new lines and backslashes in octal.
QString unescapeMountField(const QByteArray& field)
{
    QByteArray out;
    out.reserve(field.size());
    for (int i = 0; i < field.size(); ++i) {
        if (field.at(i) == '\\' && i + 3 < field.size()) {
            const QByteArray code = field.mid(i + 1, 3);
            bool ok = false;
            const int value = code.toInt(&ok, 8);
            if (ok && code.size() == 3) {
                out.append(char(value));
                i += 3;
                continue;
            }
        }
        out.append(field.at(i));
    }
    return QFile::decodeName(out);
}

// "//server/share" and "server:/export" both become "server/share" below the
// shares prefix, so every share has a path of its own.
QString sharePath(const QString& source)
{
    QString rest = source;
    if (rest.startsWith(QLatin1String("//")))
        rest = rest.mid(2);
    else
        rest.replace(QLatin1String(":/"), QLatin1String("/"));
    while (rest.endsWith(QLatin1Char('/')))
        rest.chop(1);
    return SharesPrefix + QLatin1Char('/') + rest;
}

QString joinPath(const QString& folder, const QString& name)
{
    return folder.endsWith(QLatin1Char('/')) ? folder + name : folder + QLatin1Char('/') + name;
}

// A big folder makes a hundred thousand of these. Filling a copy of an object
// that has every key already is about twice as fast as growing an empty one
// key by key.
QJsonObject makeItem(const QString& name, const QString& path, const QString& realPath, int type, bool isHidden,
    bool isSymlink)
{
    static const QJsonObject blank {
        {QLatin1String(Items::Name), QString()},
        {QLatin1String(Items::Path), QString()},
        {QLatin1String(Items::RealPath), QString()},
        {QLatin1String(Items::Type::Key), 0},
        {QLatin1String(Items::IsHidden), false},
        {QLatin1String(Items::IsSymlink), false},
    };
    QJsonObject item = blank;
    item.insert(QLatin1String(Items::Name), name);
    item.insert(QLatin1String(Items::Path), path);
    item.insert(QLatin1String(Items::RealPath), realPath);
    item.insert(QLatin1String(Items::Type::Key), type);
    item.insert(QLatin1String(Items::IsHidden), isHidden);
    item.insert(QLatin1String(Items::IsSymlink), isSymlink);
    return item;
}

struct Entry
{
    QString name;
    QString sortKey;
    bool isFolder = false;
    bool isSymlink = false;
};

} // namespace

FileSystemListing::FileSystemListing() = default;

void FileSystemListing::setMountTable(const QString& file)
{
    MountTableSetting& setting = mountTableSetting();
    QMutexLocker locker(&setting.lock);
    setting.file = file.isEmpty() ? DefaultMountTable : file;
}

QString FileSystemListing::mountTable()
{
    MountTableSetting& setting = mountTableSetting();
    QMutexLocker locker(&setting.lock);
    return setting.file;
}

QList<FileSystemListing::Volume> FileSystemListing::volumesFromMountInfo(const QByteArray& mountInfo)
{
    QList<Volume> volumes;
    const QList<QByteArray> lines = mountInfo.split('\n');
    for (const QByteArray& line : lines) {
        const QList<QByteArray> fields = line.simplified().split(' ');
        // id parent major:minor root mount-point options [optional...] - type source super-options
        const int separator = fields.indexOf("-");
        if (separator < 6 || separator + 2 >= fields.size())
            continue;
        Volume volume;
        volume.realPath = unescapeMountField(fields.at(4));
        volume.fileSystem = QString::fromUtf8(fields.at(separator + 1));
        volume.source = unescapeMountField(fields.at(separator + 2));
        if (volume.realPath.isEmpty() || !volume.realPath.startsWith(QLatin1Char('/')))
            continue;
        if (isPseudoFileSystem(volume.fileSystem) || isSystemMountPoint(volume.realPath))
            continue;
        volume.isShare = isShareFileSystem(volume.fileSystem);
        if (volume.isShare) {
            volume.name = volume.source;
            volume.path = sharePath(volume.source);
        } else if (volume.realPath == QLatin1String("/")) {
            volume.name = volume.realPath;
            volume.path = volume.realPath;
        } else {
            volume.name = volume.realPath;
            volume.path = VolumesPrefix + volume.realPath;
        }
        // A later line for the same mount point covers the earlier one.
        auto same = std::find_if(
            volumes.begin(), volumes.end(), [&](const Volume& known) { return known.realPath == volume.realPath; });
        if (same != volumes.end())
            *same = volume;
        else
            volumes.append(volume);
    }
    return volumes;
}

bool FileSystemListing::list(const QString& path, int depth, int limit, bool withHidden)
{
    m_items = QJsonArray();
    m_skipped.clear();
    m_errorString.clear();
    m_hasError = false;
    if (path.isEmpty())
        listVolumes(depth, limit, withHidden);
    else
        listFolder(path, path, depth, limit, withHidden, true);
    return !m_hasError;
}

void FileSystemListing::listVolumes(int depth, int limit, bool withHidden)
{
    const QString table = mountTable();
    QFile file(table);
    if (!file.open(QIODevice::ReadOnly)) {
        fail(QStringLiteral("Cannot read the mount table %1: %2").arg(table, file.errorString()));
        return;
    }
    // Proc files report no size, so read until the end.
    const QList<Volume> volumes = volumesFromMountInfo(file.readAll());
    for (const Volume& volume : volumes) {
        struct stat info
        {
        };
        // A mount point over a single file (a bind-mounted configuration file,
        // say) is no volume.
        if (::stat(QFile::encodeName(volume.realPath).constData(), &info) != 0 || !S_ISDIR(info.st_mode))
            continue;
        if (full(limit))
            return;
        m_items.append(makeItem(volume.name, volume.path, volume.realPath,
            volume.isShare ? Items::Type::Share : Items::Type::Volume, false, false));
    }
    if (depth > 0) {
        for (const Volume& volume : volumes)
            listFolder(volume.path, volume.realPath, depth - 1, limit, withHidden, false);
    }
}

void FileSystemListing::listFolder(
    const QString& shownPath, const QString& realPath, int depth, int limit, bool withHidden, bool isTop)
{
    const QByteArray encoded = QFile::encodeName(realPath);
    DIR* dir = ::opendir(encoded.constData());
    if (!dir) {
        const QString text
            = QStringLiteral("Cannot list %1: %2").arg(realPath, QString::fromLocal8Bit(std::strerror(errno)));
        if (isTop) {
            fail(text);
        } else {
            m_skipped.append(realPath);
            NVL::NvlDebug(QStringLiteral("NVB")).debug() << text;
        }
        return;
    }
    const int fd = ::dirfd(dir);
    std::vector<Entry> entries;
    while (dirent* record = ::readdir(dir)) {
        const char* raw = record->d_name;
        if (raw[0] == '.' && (raw[1] == '\0' || (raw[1] == '.' && raw[2] == '\0')))
            continue;
        if (!withHidden && raw[0] == '.')
            continue;
        Entry entry;
        entry.name = QFile::decodeName(raw);
        // The directory entry usually tells the kind already; only links (whose
        // target decides) and file systems that leave the kind open need a stat.
        switch (record->d_type) {
        case DT_REG:
        case DT_FIFO:
        case DT_SOCK:
        case DT_CHR:
        case DT_BLK:
            break;
        case DT_DIR:
            entry.isFolder = true;
            break;
        default: {
            struct stat info
            {
            };
            if (::fstatat(fd, raw, &info, AT_SYMLINK_NOFOLLOW) != 0)
                continue; // gone between readdir and stat
            if (S_ISLNK(info.st_mode)) {
                entry.isSymlink = true;
                struct stat target
                {
                };
                entry.isFolder = ::fstatat(fd, raw, &target, 0) == 0 && S_ISDIR(target.st_mode);
            } else {
                entry.isFolder = S_ISDIR(info.st_mode);
            }
            break;
        }
        }
        entry.sortKey = entry.name.toCaseFolded();
        entries.push_back(std::move(entry));
    }
    ::closedir(dir);

    // Folders first, then by name as a person reads it.
    std::sort(entries.begin(), entries.end(), [](const Entry& left, const Entry& right) {
        if (left.isFolder != right.isFolder)
            return left.isFolder;
        // Folding once per entry keeps the comparisons plain.
        if (left.sortKey != right.sortKey)
            return left.sortKey < right.sortKey;
        return left.name < right.name;
    });

    for (const Entry& entry : entries) {
        if (full(limit))
            return;
        const QString entryRealPath = joinPath(realPath, entry.name);
        // Most folders are shown under their own path: one join serves both.
        const QString entryPath = shownPath == realPath ? entryRealPath : joinPath(shownPath, entry.name);
        m_items.append(makeItem(entry.name, entryPath, entryRealPath,
            entry.isFolder ? Items::Type::Folder : Items::Type::File, entry.name.startsWith(QLatin1Char('.')),
            entry.isSymlink));
    }
    if (depth <= 0)
        return;
    // Links are never descended into, so a link to an ancestor cannot loop.
    for (const Entry& entry : entries) {
        if (entry.isFolder && !entry.isSymlink)
            listFolder(
                joinPath(shownPath, entry.name), joinPath(realPath, entry.name), depth - 1, limit, withHidden, false);
    }
}

QJsonArray FileSystemListing::takeItems()
{
    QJsonArray items;
    items.swap(m_items);
    return items;
}

bool FileSystemListing::full(int limit) const
{
    return limit > 0 && m_items.size() >= limit;
}

void FileSystemListing::fail(const QString& text)
{
    m_hasError = true;
    m_errorString = text;
}

} // namespace NVB
