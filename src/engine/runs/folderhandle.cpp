#include "folderhandle.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QList>

#include "core/bytename.h"

namespace NVB::Engine {

FolderHandle::~FolderHandle()
{
    if (m_fd >= 0)
        ::close(m_fd);
}

FolderHandle::FolderHandle(FolderHandle&& other) noexcept
    : m_fd(other.m_fd)
    , m_followSystemLinks(other.m_followSystemLinks)
{
    other.m_fd = -1;
}

FolderHandle& FolderHandle::operator=(FolderHandle&& other) noexcept
{
    if (this != &other) {
        if (m_fd >= 0)
            ::close(m_fd);
        m_fd = other.m_fd;
        m_followSystemLinks = other.m_followSystemLinks;
        other.m_fd = -1;
    }
    return *this;
}

FolderHandle FolderHandle::duplicate() const
{
    return FolderHandle(m_fd >= 0 ? ::fcntl(m_fd, F_DUPFD_CLOEXEC, 0) : -1, m_followSystemLinks);
}

bool FolderHandle::isPlainRelative(const QByteArray& relative)
{
    if (relative.isEmpty() || relative.startsWith('/'))
        return false;
    for (const QByteArray& part : relative.split('/')) {
        if (part.isEmpty() || part == "." || part == "..")
            return false;
    }
    return true;
}

bool FolderHandle::isPlainAbsolute(const QByteArray& path)
{
    return path == "/" || (path.startsWith('/') && isPlainRelative(path.mid(1)));
}

FolderHandle FolderHandle::openAbsolute(const QByteArray& path, QString* error, bool followSystemLinks)
{
    const int fd = ::open(path.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0 && error) {
        *error = QStringLiteral("Cannot open the folder %1: %2")
                     .arg(NVL::ByteName::decode(path), QString::fromLocal8Bit(std::strerror(errno)));
    }
    return FolderHandle(fd, followSystemLinks);
}

FolderHandle FolderHandle::openBelow(const QByteArray& relative, bool create, QString* error) const
{
    if (!isPlainRelative(relative)) {
        if (error)
            *error = QStringLiteral("The path %1 leaves its folder").arg(NVL::ByteName::decode(relative));
        return FolderHandle();
    }
    FolderHandle current = duplicate();
    for (const QByteArray& part : relative.split('/')) {
        int next = ::openat(current.m_fd, part.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
        struct stat link
        {
        };
        if (next < 0 && (errno == ELOOP || errno == ENOTDIR) && m_followSystemLinks
            && ::fstatat(current.m_fd, part.constData(), &link, AT_SYMLINK_NOFOLLOW) == 0 && S_ISLNK(link.st_mode)
            && (link.st_uid == 0 || link.st_uid == ::geteuid()))
            next = ::openat(current.m_fd, part.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (next < 0 && errno == ENOENT && create) {
            if (::mkdirat(current.m_fd, part.constData(), 0700) == 0 || errno == EEXIST)
                next = ::openat(current.m_fd, part.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
        }
        if (next < 0) {
            if (error) {
                *error = QStringLiteral("Cannot open the folder %1: %2")
                             .arg(NVL::ByteName::decode(relative), QString::fromLocal8Bit(std::strerror(errno)));
            }
            return FolderHandle();
        }
        current = FolderHandle(next, m_followSystemLinks);
    }
    return current;
}

} // namespace NVB::Engine
