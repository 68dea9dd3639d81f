#include "incrementheader.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

#include <QtEndian>

#include "core/bytename.h"
#include "runs/folderhandle.h"

namespace NVB::Engine {

namespace {

constexpr char Magic[8] = {'N', 'V', 'B', 'I', 'N', 'C', '0', '1'};
constexpr int FixedSize = 8 + 4 + 4 + 4;
constexpr quint32 MaxObjectName = 4096;

bool readExactly(int fd, char* data, size_t size)
{
    while (size > 0) {
        const ssize_t got = ::read(fd, data, size);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            return false;
        data += got;
        size -= size_t(got);
    }
    return true;
}

} // namespace

QByteArray IncrementHeader::toBytes() const
{
    const QByteArray name = baseObject.toUtf8();
    QByteArray out(FixedSize, Qt::Uninitialized);
    std::memcpy(out.data(), Magic, 8);
    qToLittleEndian<quint32>(blockSize, out.data() + 8);
    qToLittleEndian<qint32>(baseEncoding, out.data() + 12);
    qToLittleEndian<quint32>(quint32(name.size()), out.data() + 16);
    return out + name;
}

std::optional<IncrementHeader> IncrementHeader::read(int fd, QString* error)
{
    char fixed[FixedSize];
    if (!readExactly(fd, fixed, FixedSize) || std::memcmp(fixed, Magic, 8) != 0) {
        *error = QStringLiteral("not a block increment");
        return std::nullopt;
    }
    IncrementHeader header;
    header.blockSize = qFromLittleEndian<quint32>(fixed + 8);
    header.baseEncoding = qFromLittleEndian<qint32>(fixed + 12);
    const quint32 length = qFromLittleEndian<quint32>(fixed + 16);
    QByteArray name(int(qMin(length, MaxObjectName)), Qt::Uninitialized);
    if (header.blockSize == 0 || length == 0 || length > MaxObjectName
        || !readExactly(fd, name.data(), size_t(name.size()))) {
        *error = QStringLiteral("its header is damaged");
        return std::nullopt;
    }
    header.baseObject = QString::fromUtf8(name);
    return header;
}

int IncrementHeader::openObject(const FolderHandle& storage, const QString& object, QString* error)
{
    const QByteArray relative = NVL::ByteName::encode(object);
    if (!FolderHandle::isPlainRelative(relative)) {
        *error = QStringLiteral("The stored object %1 is refused: it leaves the storage folder").arg(object);
        return -1;
    }
    const int slash = relative.lastIndexOf('/');
    const FolderHandle folder = slash > 0 ? storage.openBelow(relative.left(slash), false, error) : storage.duplicate();
    const int fd = folder.isValid()
        ? ::openat(folder.fd(), relative.mid(slash + 1).constData(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC)
        : -1;
    if (fd < 0)
        *error = QStringLiteral("The stored object %1 is missing").arg(object);
    return fd;
}

std::optional<IncrementHeader> IncrementHeader::ofObject(
    const FolderHandle& storage, const QString& object, QString* error)
{
    const int fd = openObject(storage, object, error);
    if (fd < 0)
        return std::nullopt;
    auto header = read(fd, error);
    ::close(fd);
    if (!header)
        *error = QStringLiteral("The increment %1 is damaged: %2").arg(object, *error);
    return header;
}

} // namespace NVB::Engine
