#include "filesystemdriver.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <QRandomGenerator>
#include <QStringList>

#include "settings/retrypolicy.h"
#include "settings/transferthrottle.h"

namespace NVB::Engine {

// Closes a descriptor on every path out of a function.
class FileSystemDriver::Descriptor
{
public:
    explicit Descriptor(int fd)
        : m_fd(fd)
    { }
    ~Descriptor()
    {
        if (m_fd >= 0)
            ::close(m_fd);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int get() const { return m_fd; }
    int release() { return std::exchange(m_fd, -1); }
    void reset(int fd)
    {
        if (m_fd >= 0)
            ::close(m_fd);
        m_fd = fd;
    }

private:
    int m_fd;
};

namespace {

// The errno of this thread's last failure, which decides whether to try again.
thread_local int lastFailure = 0;

constexpr int FolderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

QByteArray nameOf(const QString& segment)
{
    return QFile::encodeName(segment);
}

bool writeAll(int fd, const char* data, qint64 size)
{
    while (size > 0) {
        const ssize_t written = ::write(fd, data, size_t(size));
        if (written < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        data += written;
        size -= written;
    }
    return true;
}

} // namespace

FileSystemDriver::FileSystemDriver(const QString& root)
    : m_root(root)
{ }

QString FileSystemDriver::description() const
{
    return QStringLiteral("folder %1").arg(m_root);
}

// Missing objects and folders are normal answers, a missing root is not: it is
// an unmounted disk or a wrong path, and must not look like an empty storage.
QString FileSystemDriver::rootError() const
{
    struct stat info
    {
    };
    if (::stat(QFile::encodeName(m_root).constData(), &info) == 0 && S_ISDIR(info.st_mode))
        return {};
    return QStringLiteral("The storage folder %1 does not exist or is not a folder.").arg(m_root);
}

QString FileSystemDriver::failure(const QString& action, const QString& key) const
{
    const int code = errno;
    lastFailure = code;
    QString reason = QString::fromLocal8Bit(std::strerror(code));
    if (code == ELOOP || code == ENOTDIR)
        reason = QStringLiteral("a part of its path is a link or not a folder");
    return QStringLiteral("Cannot %1 \"%2\" in %3: %4.").arg(action, key, description(), reason);
}

int FileSystemDriver::openFolder(const QStringList& segments, bool create) const
{
    Descriptor folder(::open(QFile::encodeName(m_root).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    for (int i = 0; folder.get() >= 0 && i < segments.size(); ++i) {
        const QByteArray name = nameOf(segments.at(i));
        int next = ::openat(folder.get(), name.constData(), FolderFlags);
        if (next < 0 && errno == ENOENT && create) {
            if (::mkdirat(folder.get(), name.constData(), 0755) == 0 || errno == EEXIST) {
                // The new folder's name must survive a crash as much as the file.
                ::fsync(folder.get());
                next = ::openat(folder.get(), name.constData(), FolderFlags);
            }
        }
        const int code = errno;
        folder.reset(next);
        errno = code; // callers report why the walk stopped
    }
    return folder.release();
}

int FileSystemDriver::openParent(const QString& key, bool create, QString* leaf) const
{
    QStringList segments = key.split(QLatin1Char('/'));
    *leaf = segments.takeLast();
    return openFolder(segments, create);
}

StorageStat FileSystemDriver::stat(const QString& key) const
{
    StorageStat result;
    result.error = keyError(key);
    if (!result.ok())
        return result;
    QString leaf;
    Descriptor folder(openParent(key, false, &leaf));
    struct stat info
    {
    };
    if (folder.get() < 0 || ::fstatat(folder.get(), nameOf(leaf).constData(), &info, AT_SYMLINK_NOFOLLOW) != 0) {
        result.error = errno == ENOENT ? rootError() : failure(QStringLiteral("look up"), key);
        return result;
    }
    if (!S_ISREG(info.st_mode)) {
        result.error = QStringLiteral("\"%1\" in %2 is not a regular file.").arg(key, description());
        return result;
    }
    result.exists = true;
    result.size = info.st_size;
    return result;
}

StorageRead FileSystemDriver::read(const QString& key, qint64 offset, qint64 length) const
{
    StorageRead result;
    RetryPolicy::storage().run([&] {
        lastFailure = 0;
        result = readOnce(key, offset, length);
        return result.ok() ? 0 : lastFailure;
    });
    return result;
}

StorageRead FileSystemDriver::readOnce(const QString& key, qint64 offset, qint64 length) const
{
    StorageRead result;
    result.error = keyError(key);
    if (!result.ok())
        return result;
    if (offset < 0) {
        result.error = QStringLiteral("Cannot read \"%1\" from the negative offset %2.").arg(key).arg(offset);
        return result;
    }
    QString leaf;
    Descriptor folder(openParent(key, false, &leaf));
    Descriptor file(
        folder.get() < 0 ? -1 : ::openat(folder.get(), nameOf(leaf).constData(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC));
    struct stat info
    {
    };
    if (file.get() < 0 || ::fstat(file.get(), &info) != 0) {
        result.error = failure(QStringLiteral("read"), key);
        return result;
    }
    if (!S_ISREG(info.st_mode)) {
        result.error = QStringLiteral("\"%1\" in %2 is not a regular file.").arg(key, description());
        return result;
    }
    const qint64 available = qMax<qint64>(0, info.st_size - offset);
    const qint64 wanted = length < 0 ? available : qMin(length, available);
    // Repository objects are packs of a few MiB; a byte array holds at most 2 GiB.
    if (wanted > std::numeric_limits<int>::max() - 64) {
        result.error
            = QStringLiteral("Cannot read %1 bytes of \"%2\" at once; read it in ranges.").arg(wanted).arg(key);
        return result;
    }
    result.data.resize(int(wanted));
    qint64 done = 0;
    while (done < result.data.size()) {
        const ssize_t got
            = ::pread(file.get(), result.data.data() + done, size_t(result.data.size() - done), offset + done);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0) {
            result.error = failure(QStringLiteral("read"), key);
            result.data.clear();
            return result;
        }
        if (got == 0)
            break; // shrunk while reading: report what is there
        done += got;
    }
    result.data.truncate(int(done));
    TransferThrottle::local().take(done);
    return result;
}

StorageStatus FileSystemDriver::write(const QString& key, const QByteArray& data)
{
    StorageStatus status;
    RetryPolicy::storage().run([&] {
        lastFailure = 0;
        status = writeOnce(key, data);
        return status.ok() ? 0 : lastFailure;
    });
    return status;
}

StorageStatus FileSystemDriver::writeOnce(const QString& key, const QByteArray& data)
{
    StorageStatus status {keyError(key)};
    if (!status.ok())
        return status;
    QString leaf;
    Descriptor folder(openParent(key, true, &leaf));
    if (folder.get() < 0)
        return {failure(QStringLiteral("write"), key)};
    TransferThrottle::local().take(data.size());
    const QByteArray temporary
        = nameOf(QStringLiteral(".tmp-%1").arg(QRandomGenerator::system()->generate64(), 16, 16, QLatin1Char('0')));
    Descriptor file(
        ::openat(folder.get(), temporary.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0644));
    if (file.get() < 0)
        return {failure(QStringLiteral("write"), key)};
    if (!writeAll(file.get(), data.constData(), data.size()) || ::fsync(file.get()) != 0 || ::close(file.release()) != 0
        || ::renameat(folder.get(), temporary.constData(), folder.get(), nameOf(leaf).constData()) != 0) {
        status.error = failure(QStringLiteral("write"), key);
        ::unlinkat(folder.get(), temporary.constData(), 0);
        return status;
    }
    if (::fsync(folder.get()) != 0)
        status.error = failure(QStringLiteral("make durable"), key);
    return status;
}

StorageStatus FileSystemDriver::remove(const QString& key)
{
    StorageStatus status {keyError(key)};
    if (!status.ok())
        return status;
    QString leaf;
    Descriptor folder(openParent(key, false, &leaf));
    if (folder.get() < 0 || ::unlinkat(folder.get(), nameOf(leaf).constData(), 0) != 0)
        return {errno == ENOENT ? rootError() : failure(QStringLiteral("remove"), key)};
    ::fsync(folder.get());
    return status;
}

StorageListing FileSystemDriver::list(const QString& prefix) const
{
    StorageListing listing;
    listing.error = prefixError(prefix);
    if (!listing.ok())
        return listing;
    const QStringList segments = prefix.isEmpty() ? QStringList() : prefix.split(QLatin1Char('/'));
    const int folder = openFolder(segments, false);
    if (folder < 0) {
        // A prefix that does not exist (or names an object) holds nothing.
        const bool absent = errno == ENOENT || errno == ENOTDIR;
        listing.error = absent ? rootError() : failure(QStringLiteral("list"), prefix);
        return listing;
    }
    if (!listFolder(folder, prefix, &listing))
        listing.error = failure(QStringLiteral("list"), prefix);
    std::sort(listing.objects.begin(), listing.objects.end(),
        [](const StorageObjectInfo& a, const StorageObjectInfo& b) { return a.key < b.key; });
    return listing;
}

// Takes ownership of `folder`.
bool FileSystemDriver::listFolder(int folder, const QString& path, StorageListing* listing) const
{
    DIR* stream = ::fdopendir(folder);
    if (!stream) {
        ::close(folder);
        return false;
    }
    bool ok = true;
    errno = 0;
    while (dirent* entry = ::readdir(stream)) {
        const QString name = QFile::decodeName(entry->d_name);
        if (name == QLatin1String(".") || name == QLatin1String("..") || name.startsWith(QLatin1String(".tmp-")))
            continue;
        const QString key = path.isEmpty() ? name : path + QLatin1Char('/') + name;
        struct stat info
        {
        };
        if (::fstatat(::dirfd(stream), entry->d_name, &info, AT_SYMLINK_NOFOLLOW) != 0)
            continue; // removed meanwhile
        if (S_ISREG(info.st_mode)) {
            listing->objects.append({key, info.st_size});
        } else if (S_ISDIR(info.st_mode)) {
            const int child = ::openat(::dirfd(stream), entry->d_name, FolderFlags);
            if (child >= 0 && !listFolder(child, key, listing))
                ok = false;
        }
        // Links and special files are never objects of ours.
        errno = 0;
    }
    if (errno != 0)
        ok = false;
    ::closedir(stream);
    return ok;
}

} // namespace NVB::Engine
