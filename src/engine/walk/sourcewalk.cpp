#include "sourcewalk.h"

#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>

#include <QDir>
#include <QList>
#include <QPair>

#include "core/bytename.h"
#include "runs/fileselection.h"

namespace NVB::Engine {

namespace {

bool isBelowOrSame(const QString& path, const QString& root)
{
    if (root == QLatin1String("/"))
        return true;
    return path == root || (path.startsWith(root) && path.at(root.size()) == QLatin1Char('/'));
}

// Most names are plain ASCII, which NVL::ByteName keeps as they are: those
// skip its byte-by-byte decoding, the walk's main cost per entry.
QString decodeName(const char* name)
{
    const size_t length = std::strlen(name);
    for (size_t i = 0; i < length; ++i) {
        if (static_cast<unsigned char>(name[i]) >= 0x80)
            return NVL::ByteName::decode(QByteArray(name, int(length)));
    }
    return QString::fromLatin1(name, int(length));
}

} // namespace

SourceWalk::SourceWalk(const FileSelection& selection, Options options)
    : m_selection(selection)
    , m_options(std::move(options))
{
    for (QString& path : m_options.neverTaken)
        path = QDir::cleanPath(path);
}

bool SourceWalk::isNeverTaken(const QString& path) const
{
    return std::any_of(m_options.neverTaken.cbegin(), m_options.neverTaken.cend(),
        [&path](const QString& folder) { return isBelowOrSame(path, folder); });
}

void SourceWalk::walk(Visitor& visitor)
{
    for (const QString& root : m_selection.roots()) {
        if (visitor.stopped())
            break;
        if (!root.startsWith(QLatin1Char('/'))) {
            visitor.failed(root, QStringLiteral("The source %1 is not an absolute path").arg(root));
            continue;
        }
        if (m_selection.isExcludedPath(root) || isNeverTaken(root))
            continue;
        struct stat info
        {
        };
        if (::stat(NVL::ByteName::encode(root).constData(), &info) != 0) {
            visitor.failed(root, QStringLiteral("The source %1 does not exist").arg(root));
            continue;
        }
        visitor.beginRoot(root);
        if (S_ISDIR(info.st_mode)) {
            m_oneFileSystem = m_options.oneFileSystem.value_or(root == QLatin1String("/"));
            visitor.enterFolder(root, info, true);
            walkFolder(root, info.st_dev, visitor);
            visitor.leaveFolder(root, info, true);
        } else if (S_ISREG(info.st_mode)) {
            visitor.file(root, info, true);
        }
    }
}

void SourceWalk::walkFolder(const QString& folder, dev_t device, Visitor& visitor)
{
    DIR* dir = ::opendir(NVL::ByteName::encode(folder).constData());
    if (!dir) {
        visitor.failed(folder, QStringLiteral("Cannot read the folder %1").arg(folder));
        return;
    }
    visitor.folderOpened(folder);
    const int fd = ::dirfd(dir);
    const QString prefix = folder == QLatin1String("/") ? folder : folder + QLatin1Char('/');
    QList<QPair<QString, struct stat>> folders;
    while (const dirent* entry = ::readdir(dir)) {
        if (visitor.stopped())
            break;
        if (std::strcmp(entry->d_name, ".") == 0 || std::strcmp(entry->d_name, "..") == 0)
            continue;
        const QString name = decodeName(entry->d_name);
        const QString path = prefix + name;
        struct stat info
        {
        };
        if (::fstatat(fd, entry->d_name, &info, AT_SYMLINK_NOFOLLOW) != 0) {
            visitor.failed(path, QStringLiteral("Cannot read %1").arg(path));
            continue;
        }
        if (m_selection.isExcludedPath(path) || isNeverTaken(path))
            continue;
        bool followedLink = false;
        if (S_ISLNK(info.st_mode) && m_options.skipSymlinks)
            continue;
        if (S_ISLNK(info.st_mode)) {
            // A link is kept as a link, unless links to files are followed.
            struct stat target
            {
            };
            if (!m_options.followFileSymlinks || ::fstatat(fd, entry->d_name, &target, 0) != 0
                || !S_ISREG(target.st_mode)) {
                if (!m_selection.takesFile(name))
                    continue;
                QByteArray buffer(int(info.st_size > 0 ? info.st_size : 255) + 1, Qt::Uninitialized);
                const ssize_t length = ::readlinkat(fd, entry->d_name, buffer.data(), size_t(buffer.size()));
                if (length < 0 || length >= buffer.size()) {
                    visitor.failed(path, QStringLiteral("Cannot read the link %1").arg(path));
                    continue;
                }
                buffer.truncate(int(length));
                visitor.link(path, info, NVL::ByteName::decode(buffer));
                continue;
            }
            info = target;
            followedLink = true;
        }
        if (S_ISDIR(info.st_mode)) {
            if ((!m_oneFileSystem || info.st_dev == device) && !m_selection.skipsFolder(name))
                folders.append({path, info});
        } else if (S_ISREG(info.st_mode) && m_selection.takesFile(name)) {
            visitor.file(path, info, followedLink);
        }
    }
    ::closedir(dir);

    for (const auto& [path, info] : std::as_const(folders)) {
        if (visitor.stopped())
            break;
        visitor.enterFolder(path, info, false);
        walkFolder(path, device, visitor);
        visitor.leaveFolder(path, info, false);
    }
    visitor.folderClosed(folder);
}

} // namespace NVB::Engine
