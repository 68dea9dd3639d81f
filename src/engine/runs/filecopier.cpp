#include "filecopier.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

#include <memory>

#include <openssl/evp.h>

#include <QRandomGenerator>

#include "core/bytename.h"
#include "folderhandle.h"
#include "objectdecoder.h"
#include "objectencoder.h"
#include "settings/transferthrottle.h"

namespace NVB::Engine {

namespace {

constexpr size_t BlockSize = 1 << 20;

QString systemError(const QString& what, const QString& path)
{
    return QStringLiteral("%1 %2: %3").arg(what, path, QString::fromLocal8Bit(std::strerror(errno)));
}

QByteArray randomName()
{
    return FileCopier::temporaryPrefix() + QByteArray::number(QRandomGenerator::global()->generate64(), 16);
}

struct DigestDeleter
{
    void operator()(EVP_MD_CTX* context) const { EVP_MD_CTX_free(context); }
};
using Digest = std::unique_ptr<EVP_MD_CTX, DigestDeleter>;

Digest newDigest()
{
    Digest digest(EVP_MD_CTX_new());
    if (digest && EVP_DigestInit_ex(digest.get(), EVP_sha256(), nullptr) != 1)
        digest.reset();
    return digest;
}

QByteArray finalDigest(EVP_MD_CTX* digest)
{
    unsigned char value[EVP_MAX_MD_SIZE];
    unsigned int length = 0;
    if (EVP_DigestFinal_ex(digest, value, &length) != 1)
        return {};
    return QByteArray(reinterpret_cast<const char*>(value), int(length));
}

// The file being written: unnamed while it is, so that nothing but a whole
// copy ever carries a name.
class PendingFile
{
public:
    explicit PendingFile(const FolderHandle& folder)
        : m_folder(folder.fd())
    { }
    ~PendingFile()
    {
        if (m_fd >= 0)
            ::close(m_fd);
        if (!m_name.isEmpty())
            ::unlinkat(m_folder, m_name.constData(), 0);
    }
    PendingFile(const PendingFile&) = delete;
    PendingFile& operator=(const PendingFile&) = delete;

    bool create()
    {
        m_fd = ::openat(m_folder, ".", O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600);
        if (m_fd >= 0)
            return true;
        for (int attempt = 0; attempt < 16 && m_fd < 0; ++attempt) {
            const QByteArray name = randomName();
            m_fd = ::openat(m_folder, name.constData(), O_CREAT | O_EXCL | O_NOFOLLOW | O_WRONLY | O_CLOEXEC, 0600);
            if (m_fd >= 0)
                m_name = name;
            else if (errno != EEXIST)
                return false;
        }
        return m_fd >= 0;
    }

    int fd() const { return m_fd; }

    bool publish(const QByteArray& name, bool replace)
    {
        if (m_name.isEmpty()) {
            // An unnamed file gets a name by linkat through /proc, which
            // needs no privilege; it fails on an existing name, which is what
            // a backup wants. A restore links to a fresh name first and then
            // renames it over the old file in one step.
            char procPath[64];
            std::snprintf(procPath, sizeof procPath, "/proc/self/fd/%d", m_fd);
            if (!replace)
                return link(procPath, name);
            for (int attempt = 0; attempt < 16; ++attempt) {
                const QByteArray temporary = randomName();
                if (link(procPath, temporary)) {
                    m_name = temporary;
                    break;
                }
                if (errno != EEXIST)
                    return false;
            }
            if (m_name.isEmpty())
                return false;
        }
        const int flags = replace ? 0 : RENAME_NOREPLACE;
        if (::renameat2(m_folder, m_name.constData(), m_folder, name.constData(), flags) != 0)
            return false;
        m_name.clear();
        return true;
    }

private:
    bool link(const char* procPath, const QByteArray& name) const
    {
        if (::linkat(AT_FDCWD, procPath, m_folder, name.constData(), AT_SYMLINK_FOLLOW) == 0)
            return true;
        // Without /proc, root can still link the descriptor itself.
        return errno == ENOENT && ::linkat(m_fd, "", m_folder, name.constData(), AT_EMPTY_PATH) == 0;
    }

    int m_folder;
    int m_fd = -1;
    QByteArray m_name;
};

} // namespace

QByteArray FileCopier::temporaryPrefix()
{
    return QByteArrayLiteral(".nvb-partial-");
}

QByteArray FileCopier::checksum(int fd, ObjectEncoding encoding, const std::atomic_bool* stop, const QString& password)
{
    Digest digest = newDigest();
    if (!digest)
        return {};
    ObjectDecoder in(fd, encoding, password);
    std::unique_ptr<char[]> buffer(new char[BlockSize]);
    for (;;) {
        if (stop && *stop)
            return {};
        const ssize_t got = in.read(buffer.get(), BlockSize);
        if (got == 0)
            break;
        if (got < 0)
            return {};
        EVP_DigestUpdate(digest.get(), buffer.get(), size_t(got));
    }
    return finalDigest(digest.get());
}

QByteArray FileCopier::checksum(
    const std::function<ssize_t(char*, size_t, QString*)>& source, const std::atomic_bool* stop, QString* error)
{
    Digest digest = newDigest();
    if (!digest)
        return {};
    std::unique_ptr<char[]> buffer(new char[BlockSize]);
    for (;;) {
        if (stop && *stop)
            return {};
        const ssize_t got = source(buffer.get(), BlockSize, error);
        if (got == 0)
            break;
        if (got < 0)
            return {};
        EVP_DigestUpdate(digest.get(), buffer.get(), size_t(got));
    }
    return finalDigest(digest.get());
}

FileCopier::Result FileCopier::copy(int from, const FolderHandle& folder, const QByteArray& name,
    const Options& options, const std::atomic_bool* stop, const QString& what)
{
    Result result;
    const QString target = NVL::ByteName::decode(name);
    PendingFile out(folder);
    if (!out.create()) {
        result.error = systemError(QStringLiteral("Cannot write"), target);
        result.targetFailed = true;
        return result;
    }
    Digest digest = newDigest();
    if (!digest) {
        result.error = QStringLiteral("Cannot compute checksums");
        return result;
    }
    ObjectDecoder in(options.source ? -1 : from, options.readEncoding, options.readPassword);
    if (!options.prologue.isEmpty()
        && ::write(out.fd(), options.prologue.constData(), size_t(options.prologue.size()))
            != ssize_t(options.prologue.size())) {
        result.error = systemError(QStringLiteral("Cannot write"), target);
        result.targetFailed = true;
        return result;
    }
    ObjectEncoder encoder(out.fd(), options.writeEncoding, options.writeKey);
    std::unique_ptr<char[]> buffer(new char[BlockSize]);
    for (;;) {
        if (stop && *stop) {
            result.status = Status::Stopped;
            return result;
        }
        QString readError;
        const ssize_t got
            = options.source ? options.source(buffer.get(), BlockSize, &readError) : in.read(buffer.get(), BlockSize);
        if (got == 0)
            break;
        if (got < 0) {
            result.error = QStringLiteral("Cannot read %1: %2").arg(what, options.source ? readError : in.error());
            return result;
        }
        EVP_DigestUpdate(digest.get(), buffer.get(), size_t(got));
        if (options.observe)
            options.observe(buffer.get(), size_t(got));
        if (!encoder.write(buffer.get(), size_t(got))) {
            result.error = systemError(QStringLiteral("Cannot write"), target);
            result.targetFailed = true;
            return result;
        }
        result.size += got;
        if (!TransferThrottle::local().take(got, stop)) {
            result.status = Status::Stopped;
            return result;
        }
    }
    if (!encoder.finish()) {
        result.error = systemError(QStringLiteral("Cannot write"), target);
        result.targetFailed = true;
        return result;
    }
    result.storedSize = encoder.storedSize() + options.prologue.size();
    result.checksum = finalDigest(digest.get());
    if (!options.expectedChecksum.isEmpty() && options.expectedChecksum != result.checksum) {
        result.error = QStringLiteral("The stored data of %1 does not match its checksum").arg(what);
        return result;
    }
    if (options.keep && !options.keep()) {
        result.status = Status::Discarded;
        return result;
    }
    if (options.setOwner && ::fchown(out.fd(), options.owner, options.group) != 0) {
        result.error = systemError(QStringLiteral("Cannot set the owner of"), target);
        return result;
    }
    ::fchmod(out.fd(), options.mode & 07777);
    ::futimens(out.fd(), options.times);
    if (!out.publish(name, options.replace)) {
        result.targetFailed = errno != EEXIST;
        result.error = systemError(QStringLiteral("Cannot finish"), target);
        return result;
    }
    result.status = Status::Done;
    return result;
}

} // namespace NVB::Engine
