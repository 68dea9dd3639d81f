#include "volumeimage.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <vector>

#include <zstd.h>

#include <QFile>

#include "imagefilereader.h"
#include "imagefilewriter.h"
#include "usedblocks.h"
#include "volumesnapshot.h"

namespace NVB::Engine {

namespace {

const char Magic[8] = {'N', 'V', 'B', 'I', 'M', 'G', '0', '1'};
constexpr quint64 EndIndex = ~quint64(0);
constexpr qint64 MaxBlockSize = 64 << 20;

QString systemError()
{
    return QString::fromLocal8Bit(std::strerror(errno));
}

// Closes on every way out.
struct Fd
{
    int fd = -1;
    ~Fd()
    {
        if (fd >= 0)
            ::close(fd);
    }
};

qint64 sizeOf(int fd)
{
    struct stat info
    {
    };
    if (::fstat(fd, &info) != 0)
        return -1;
    if (S_ISBLK(info.st_mode)) {
        quint64 bytes = 0;
        return ::ioctl(fd, BLKGETSIZE64, &bytes) == 0 ? qint64(bytes) : -1;
    }
    return S_ISREG(info.st_mode) ? qint64(info.st_size) : -1;
}

bool isZero(const char* data, size_t size)
{
    // The first byte, then the buffer against itself shifted by one.
    return size == 0 || (data[0] == 0 && std::memcmp(data, data + 1, size - 1) == 0);
}

bool readFull(int fd, void* buffer, size_t size, off_t offset, size_t* got)
{
    size_t done = 0;
    while (done < size) {
        const ssize_t n = ::pread(fd, static_cast<char*>(buffer) + done, size - done, offset + off_t(done));
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0)
            return false;
        if (n == 0)
            break;
        done += size_t(n);
    }
    *got = done;
    return true;
}

bool writeFull(int fd, const void* data, size_t size)
{
    size_t done = 0;
    while (done < size) {
        const ssize_t n = ::write(fd, static_cast<const char*>(data) + done, size - done);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return false;
        done += size_t(n);
    }
    return true;
}

template<typename T> void put(std::vector<char>* out, T value)
{
    for (size_t i = 0; i < sizeof(T); ++i)
        out->push_back(char((quint64(value) >> (8 * i)) & 0xff));
}

template<typename T> T get(const unsigned char* in)
{
    quint64 value = 0;
    for (size_t i = 0; i < sizeof(T); ++i)
        value |= quint64(in[i]) << (8 * i);
    return T(value);
}

// Zeroes [offset, offset + length) of the target: the device discards it
// where it can, a file gets zeros written.
bool zeroRange(int fd, bool blockDevice, qint64 offset, qint64 length, std::vector<char>& zeros)
{
    if (length <= 0)
        return true;
    if (blockDevice) {
        quint64 range[2] = {quint64(offset), quint64(length)};
        if (::ioctl(fd, BLKZEROOUT, range) == 0)
            return true;
    }
    if (::lseek(fd, offset, SEEK_SET) < 0)
        return false;
    while (length > 0) {
        const size_t step = size_t(qMin<qint64>(length, qint64(zeros.size())));
        if (!writeFull(fd, zeros.data(), step))
            return false;
        length -= qint64(step);
    }
    return true;
}

} // namespace

VolumeImage::Result VolumeImage::backup(const QString& device, const QString& imagePath, const Options& options,
    const std::atomic_bool& stop, const Progress& progress, std::shared_ptr<const ObjectKey> key)
{
    Result result;
    if (options.blockSize < 4096 || options.blockSize > MaxBlockSize || options.blockSize % 512 != 0) {
        result.error = QStringLiteral("The block size %1 is not a multiple of 512 between 4 KiB and 64 MiB")
                           .arg(options.blockSize);
        return result;
    }
    Fd source {::open(QFile::encodeName(device).constData(), O_RDONLY | O_CLOEXEC)};
    if (source.fd < 0) {
        result.error = QStringLiteral("Cannot open the volume %1: %2").arg(device, systemError());
        return result;
    }
    result.volumeSize = sizeOf(source.fd);
    if (result.volumeSize < 0) {
        result.error = QStringLiteral("%1 is not a volume or its size cannot be read").arg(device);
        return result;
    }
    bool readOnly = false;
    const bool writable = !VolumeSnapshot::mountPoints(device, &readOnly).isEmpty() && !readOnly;
    // The bitmap of a file system mounted read-write lags behind its writes;
    // trusting it could leave out blocks just written.
    const std::optional<UsedBlocks> used = writable ? std::nullopt : UsedBlocks::read(device);
    if (writable) {
        const VolumeSnapshot::Answer snapshot = VolumeSnapshot::forDevice(device);
        // Taking the snapshot itself is not done yet, even on LVM.
        result.warnings << QStringLiteral("%1 is mounted read-write and was imaged without a snapshot; files "
                                          "changed meanwhile may be inconsistent in the image (%2)")
                               .arg(device,
                                   snapshot.available ? QStringLiteral("LVM snapshots are not taken yet")
                                                      : snapshot.message);
    }
    ImageFileWriter target(imagePath, std::move(key));
    if (!target.isOpen()) {
        result.error = target.error();
        return result;
    }
    std::vector<char> out(Magic, Magic + sizeof(Magic));
    put<quint32>(&out, quint32(options.blockSize));
    put<quint64>(&out, quint64(result.volumeSize));
    std::vector<char> block(size_t(options.blockSize));
    std::vector<char> packed(ZSTD_compressBound(block.size()));
    ZSTD_CCtx* context = options.compress ? ZSTD_createCCtx() : nullptr;
    const qint64 blocks = (result.volumeSize + options.blockSize - 1) / options.blockSize;
    const auto fail = [&](const QString& text) {
        result.error = text;
        ZSTD_freeCCtx(context);
        QFile::remove(imagePath);
        return result;
    };
    for (qint64 index = 0; index < blocks; ++index) {
        if (stop)
            return fail(QStringLiteral("The run was stopped"));
        const off_t offset = off_t(index * options.blockSize);
        const size_t wanted = size_t(qMin<qint64>(options.blockSize, result.volumeSize - offset));
        if (used && !used->anyUsed(offset, qint64(wanted))) {
            ++result.blocksSkipped;
            if (progress)
                progress(offset + qint64(wanted), result.volumeSize);
            continue;
        }
        size_t got = 0;
        if (!readFull(source.fd, block.data(), wanted, offset, &got)) {
            if (errno == ENXIO || errno == ENODEV || errno == ENOENT)
                return fail(QStringLiteral("The volume %1 disappeared during the run").arg(device));
            if (!options.ignoreBadSectors)
                return fail(QStringLiteral("Cannot read block %1 of %2: %3").arg(index).arg(device, systemError()));
            result.warnings << QStringLiteral("Block %1 of %2 could not be read and is stored as zeros: %3")
                                   .arg(index)
                                   .arg(device, systemError());
            got = wanted;
            std::memset(block.data(), 0, wanted);
        }
        if (got < wanted)
            return fail(QStringLiteral("The volume %1 became shorter during the run").arg(device));
        if (used)
            used->clearFree(block.data(), offset, qint64(wanted));
        if (isZero(block.data(), wanted)) {
            ++result.blocksSkipped;
        } else {
            const char* data = block.data();
            size_t length = wanted;
            quint8 encoding = 0;
            if (context) {
                const size_t n = ZSTD_compressCCtx(context, packed.data(), packed.size(), block.data(), wanted, 1);
                if (!ZSTD_isError(n) && n < wanted) {
                    data = packed.data();
                    length = n;
                    encoding = 1;
                }
            }
            put<quint64>(&out, quint64(index));
            put<quint32>(&out, quint32(length));
            put<quint8>(&out, encoding);
            out.insert(out.end(), data, data + length);
            ++result.blocksStored;
        }
        if (out.size() >= (4u << 20)) {
            if (!target.write(out.data(), out.size()))
                return fail(target.error());
            out.clear();
        }
        if (progress)
            progress(offset + qint64(wanted), result.volumeSize);
    }
    put<quint64>(&out, EndIndex);
    put<quint64>(&out, quint64(result.blocksStored));
    ZSTD_freeCCtx(context);
    context = nullptr;
    if (!target.write(out.data(), out.size()) || !target.finish())
        return fail(target.error());
    result.storedBytes = target.written();
    result.ok = true;
    return result;
}

QString VolumeImage::openError(const QString& imagePath, const QString& password)
{
    ImageFileReader image(imagePath, password);
    if (!image.isOpen())
        return image.error();
    char magic[sizeof(Magic)];
    if (!image.read(magic, sizeof(magic)) || std::memcmp(magic, Magic, sizeof(Magic)) != 0)
        return image.error().isEmpty() ? QStringLiteral("%1 is not a volume image").arg(imagePath) : image.error();
    return {};
}

VolumeImage::Result VolumeImage::restore(const QString& imagePath, const QString& device, const std::atomic_bool& stop,
    const Progress& progress, const QString& password)
{
    Result result;
    const QStringList mounted = VolumeSnapshot::mountPoints(device);
    if (!mounted.isEmpty()) {
        result.error = QStringLiteral("%1 is mounted on %2: unmount it before restoring onto it")
                           .arg(device, mounted.join(QStringLiteral(", ")));
        return result;
    }
    // A wrong password is found here, before the target is even opened.
    ImageFileReader image(imagePath, password);
    if (!image.isOpen()) {
        result.error = image.error();
        return result;
    }
    unsigned char header[20];
    if (!image.read(header, sizeof(header)) || std::memcmp(header, Magic, sizeof(Magic)) != 0) {
        result.error = image.error().isEmpty()
            ? QStringLiteral("%1 is not a volume image").arg(imagePath)
            : QStringLiteral("The image %1 is damaged: %2").arg(imagePath, image.error());
        return result;
    }
    const qint64 blockSize = get<quint32>(header + 8);
    result.volumeSize = qint64(get<quint64>(header + 12));
    if (blockSize < 4096 || blockSize > MaxBlockSize || result.volumeSize < 0) {
        result.error = QStringLiteral("The image %1 is damaged: its header is not valid").arg(imagePath);
        return result;
    }
    // O_EXCL on a block device fails while anything holds it mounted.
    Fd target {::open(QFile::encodeName(device).constData(), O_WRONLY | O_EXCL | O_CLOEXEC)};
    if (target.fd < 0) {
        result.error = QStringLiteral("Cannot open %1 for the restore: %2").arg(device, systemError());
        return result;
    }
    struct stat info
    {
    };
    const bool blockDevice = ::fstat(target.fd, &info) == 0 && S_ISBLK(info.st_mode);
    const qint64 targetSize = sizeOf(target.fd);
    if (targetSize < result.volumeSize) {
        result.error = QStringLiteral("%1 holds %2 bytes, less than the %3 bytes of the imaged volume")
                           .arg(device)
                           .arg(targetSize)
                           .arg(result.volumeSize);
        return result;
    }
    std::vector<char> stored(ZSTD_compressBound(size_t(blockSize)));
    std::vector<char> block(static_cast<size_t>(blockSize));
    std::vector<char> zeros(size_t(blockSize), 0);
    qint64 next = 0; // the first byte not yet written
    const auto damaged = [&](const QString& why) {
        // The cipher's own reason, when it has one, says more than the
        // block that could not be read.
        result.error = QStringLiteral("The image %1 is damaged: %2; %3 is left partly written")
                           .arg(imagePath, image.error().isEmpty() ? why : image.error(), device);
        return result;
    };
    for (;;) {
        if (stop) {
            result.error = QStringLiteral("The run was stopped; %1 is left partly written").arg(device);
            return result;
        }
        unsigned char head[8];
        if (!image.read(head, sizeof(head)))
            return damaged(QStringLiteral("it ends early"));
        const quint64 index = get<quint64>(head);
        if (index == EndIndex) {
            unsigned char count[8];
            if (!image.read(count, sizeof(count)) || get<quint64>(count) != quint64(result.blocksStored))
                return damaged(QStringLiteral("its block count does not match"));
            if (!image.finish())
                return damaged(image.error());
            break;
        }
        unsigned char rest[5];
        if (!image.read(rest, sizeof(rest)))
            return damaged(QStringLiteral("it ends early"));
        const size_t length = get<quint32>(rest);
        const quint8 encoding = rest[4];
        const qint64 offset = qint64(index) * blockSize;
        const size_t wanted = size_t(qMin<qint64>(blockSize, result.volumeSize - offset));
        if (offset < next || offset >= result.volumeSize || length > stored.size()
            || !image.read(stored.data(), length))
            return damaged(QStringLiteral("block %1 is out of place or cut short").arg(index));
        const char* data = stored.data();
        if (encoding == 1) {
            const size_t n = ZSTD_decompress(block.data(), block.size(), stored.data(), length);
            if (ZSTD_isError(n) || n != wanted)
                return damaged(QStringLiteral("block %1 does not decompress").arg(index));
            data = block.data();
        } else if (encoding != 0 || length != wanted) {
            return damaged(QStringLiteral("block %1 has an unknown form").arg(index));
        }
        if (!zeroRange(target.fd, blockDevice, next, offset - next, zeros) || ::lseek(target.fd, offset, SEEK_SET) < 0
            || !writeFull(target.fd, data, wanted)) {
            result.error = QStringLiteral("Cannot write to %1: %2").arg(device, systemError());
            return result;
        }
        next = offset + qint64(wanted);
        ++result.blocksStored;
        if (progress)
            progress(next, result.volumeSize);
    }
    if (!zeroRange(target.fd, blockDevice, next, result.volumeSize - next, zeros) || ::fsync(target.fd) != 0) {
        result.error = QStringLiteral("Cannot write to %1: %2").arg(device, systemError());
        return result;
    }
    result.ok = true;
    return result;
}

} // namespace NVB::Engine
