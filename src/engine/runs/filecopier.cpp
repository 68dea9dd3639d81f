#include "filecopier.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace NVB::Engine {

namespace {

class Descriptor
{
public:
    explicit Descriptor(int fd)
        : m_fd(fd)
    {
    }
    ~Descriptor()
    {
        if (m_fd >= 0)
            ::close(m_fd);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int get() const { return m_fd; }
    int release()
    {
        const int fd = m_fd;
        m_fd = -1;
        return fd;
    }

private:
    int m_fd;
};

QString systemError(const QString& what, const QString& path)
{
    return QStringLiteral("%1 %2: %3").arg(what, path, QString::fromLocal8Bit(std::strerror(errno)));
}

bool copyData(int from, int to, off_t size)
{
    off_t left = size;
    // The kernel copies without a trip through user space where it can.
    while (left > 0) {
        const ssize_t copied = ::copy_file_range(from, nullptr, to, nullptr, size_t(left), 0);
        if (copied < 0) {
            if (errno == EINTR)
                continue;
            if (errno == EXDEV || errno == ENOSYS || errno == EINVAL || errno == EOPNOTSUPP)
                break;
            return false;
        }
        if (copied == 0)
            return true; // the file shrank while we copied; take what there was
        left -= copied;
    }
    if (left <= 0)
        return true;
    char buffer[1 << 16];
    for (;;) {
        const ssize_t got = ::read(from, buffer, sizeof buffer);
        if (got == 0)
            return true;
        if (got < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        for (ssize_t written = 0; written < got;) {
            const ssize_t put = ::write(to, buffer + written, size_t(got - written));
            if (put < 0) {
                if (errno == EINTR)
                    continue;
                return false;
            }
            written += put;
        }
    }
}

} // namespace

bool FileCopier::copy(const QString& source, const QString& target, QString* error)
{
    const QByteArray from = QFile::encodeName(source);
    const QByteArray to = QFile::encodeName(target);
    const QByteArray part = to + ".part";

    Descriptor in(::open(from.constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
    if (in.get() < 0) {
        *error = systemError(QStringLiteral("Cannot read"), source);
        return false;
    }
    struct stat info{};
    if (::fstat(in.get(), &info) != 0 || !S_ISREG(info.st_mode)) {
        *error = QStringLiteral("%1 is not a regular file").arg(source);
        return false;
    }
    if (!QDir().mkpath(QFileInfo(target).absolutePath())) {
        *error = QStringLiteral("Cannot create the folder of %1").arg(target);
        return false;
    }
    Descriptor out(::open(part.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
    if (out.get() < 0) {
        *error = systemError(QStringLiteral("Cannot write"), target);
        return false;
    }
    if (!copyData(in.get(), out.get(), info.st_size)) {
        *error = systemError(QStringLiteral("Cannot copy"), source);
        ::unlink(part.constData());
        return false;
    }
    const struct timespec times[2] = {info.st_atim, info.st_mtim};
    ::futimens(out.get(), times);
    ::fchmod(out.get(), info.st_mode & 07777);
    if (::close(out.release()) != 0 || ::rename(part.constData(), to.constData()) != 0) {
        *error = systemError(QStringLiteral("Cannot finish"), target);
        ::unlink(part.constData());
        return false;
    }
    return true;
}

} // namespace NVB::Engine
