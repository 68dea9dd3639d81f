#include "transferscan.h"

#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include "core/bytename.h"
#include "runs/fileselection.h"

namespace NVB::Engine {

namespace {

struct Walker
{
    const FileSelection& selection;
    const std::function<bool(const QString&)>& neverTaken;
    bool followFileSymlinks;
    bool oneFileSystem;
    const std::atomic_bool& stop;
    TransferScan::Totals totals;

    void walk(const QString& folder, dev_t device)
    {
        DIR* dir = ::opendir(NVL::ByteName::encode(folder).constData());
        if (!dir)
            return; // the job itself reports the folder it cannot read
        QStringList folders;
        while (const dirent* entry = ::readdir(dir)) {
            if (stop)
                break;
            if (std::strcmp(entry->d_name, ".") == 0 || std::strcmp(entry->d_name, "..") == 0)
                continue;
            const QString name = NVL::ByteName::decode(entry->d_name);
            const QString path
                = folder == QLatin1String("/") ? QLatin1Char('/') + name : folder + QLatin1Char('/') + name;
            struct stat info
            {
            };
            if (::fstatat(::dirfd(dir), entry->d_name, &info, AT_SYMLINK_NOFOLLOW) != 0)
                continue;
            if (selection.isExcludedPath(path) || (neverTaken && neverTaken(path)))
                continue;
            if (S_ISLNK(info.st_mode)) {
                struct stat target
                {
                };
                if (followFileSymlinks && ::fstatat(::dirfd(dir), entry->d_name, &target, 0) == 0
                    && S_ISREG(target.st_mode) && selection.takesFile(name))
                    take(target.st_size);
                continue;
            }
            if (S_ISDIR(info.st_mode)) {
                if ((!oneFileSystem || info.st_dev == device) && !selection.skipsFolder(name))
                    folders << path;
            } else if (S_ISREG(info.st_mode) && selection.takesFile(name)) {
                take(info.st_size);
            }
        }
        ::closedir(dir);
        for (const QString& path : std::as_const(folders)) {
            if (stop)
                return;
            walk(path, device);
        }
    }

    void take(qint64 size)
    {
        ++totals.count;
        totals.size += size;
    }
};

} // namespace

TransferScan::Totals TransferScan::count(const FileSelection& selection,
    const std::function<bool(const QString&)>& neverTaken, std::optional<bool> oneFileSystem, bool followFileSymlinks,
    const std::atomic_bool& stop)
{
    Walker walker {selection, neverTaken, followFileSymlinks, false, stop, {}};
    for (const QString& root : selection.roots()) {
        if (stop)
            break;
        if (!root.startsWith(QLatin1Char('/')) || selection.isExcludedPath(root) || (neverTaken && neverTaken(root)))
            continue;
        struct stat info
        {
        };
        if (::stat(NVL::ByteName::encode(root).constData(), &info) != 0)
            continue;
        if (S_ISDIR(info.st_mode)) {
            walker.oneFileSystem = oneFileSystem.value_or(root == QLatin1String("/"));
            walker.walk(root, info.st_dev);
        } else if (S_ISREG(info.st_mode)) {
            walker.take(info.st_size);
        }
    }
    return walker.totals;
}

} // namespace NVB::Engine
