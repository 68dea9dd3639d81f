#include "sourcefilecopy.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

#include "blocks/blockdiffer.h"
#include "blocks/blockhasher.h"
#include "blocks/incrementheader.h"
#include "filters/inusecheck.h"
#include "folderhandle.h"
#include "walk/filestamp.h"

namespace NVB::Engine {

using FileStamp::nanoseconds;
using FileStamp::sameFile;

SourceFileCopy::Result SourceFileCopy::copy(const QByteArray& source, const QString& path, const FolderHandle& target,
    const QByteArray& name, Options options, const std::atomic_bool& stop)
{
    Result result;
    std::unique_ptr<BlockDiffer> differ;
    std::unique_ptr<BlockHasher> hasher;
    bool unsteady = false;
    for (int attempt = 0; attempt < 2; ++attempt) {
        const int fd
            = ::open(source.constData(), O_RDONLY | O_CLOEXEC | O_NOCTTY | (options.followLink ? 0 : O_NOFOLLOW));
        if (fd < 0) {
            result.status = Status::Unreadable;
            result.error = QStringLiteral("Cannot read %1: %2").arg(path, QString::fromLocal8Bit(std::strerror(errno)));
            return result;
        }
        struct stat before
        {
        };
        if (::fstat(fd, &before) != 0 || !S_ISREG(before.st_mode)) {
            ::close(fd);
            result.status = Status::Unreadable;
            result.error = QStringLiteral("%1 is not a regular file").arg(path);
            return result;
        }
        if (options.skipInUseFiles && InUseCheck::isInUse(fd)) {
            ::close(fd);
            result.status = Status::InUse;
            return result;
        }
        FileCopier::Options copier;
        copier.times[0] = before.st_atim;
        copier.times[1] = before.st_mtim;
        copier.mode = before.st_mode;
        copier.writeEncoding = options.encoding;
        copier.writeKey = options.key;
        // The first read of a file that changes under it is thrown away and
        // made again; the second is kept, with a warning that names it.
        const bool lastAttempt = attempt == 1 && !options.skipInUseFiles;
        copier.keep = [fd, &before, &unsteady, lastAttempt] {
            struct stat after
            {
            };
            const bool steady = ::fstat(fd, &after) == 0 && sameFile(before, after);
            unsteady = !steady;
            return steady || lastAttempt;
        };
        differ.reset();
        hasher.reset();
        if (options.base) {
            const qint64 limit = options.fullAbovePercent >= 0 ? before.st_size * options.fullAbovePercent / 100 : -1;
            differ = std::make_unique<BlockDiffer>(fd, *options.base, limit);
            copier.source
                = [&differ](char* data, size_t size, QString* error) { return differ->read(data, size, error); };
            copier.prologue
                = IncrementHeader {options.blockSize, options.base->encoding, options.base->object}.toBytes();
        } else if (options.blockSize > 0) {
            hasher = std::make_unique<BlockHasher>(options.blockSize);
            copier.observe = [&hasher](const char* data, size_t size) { hasher->add(data, size); };
        }
        result.copied = FileCopier::copy(fd, target, name, copier, &stop, path);
        ::close(fd);
        if (differ && differ->overLimit()) {
            // Too much changed for an increment to pay: the file gets a new
            // full version, which later increments build on.
            options.base.reset();
            --attempt;
            continue;
        }
        if (result.copied.status != FileCopier::Status::Discarded) {
            result.source = before;
            break;
        }
    }
    if (result.copied.status == FileCopier::Status::Discarded) {
        result.status = Status::InUse;
        return result;
    }
    result.unsteady = unsteady;
    result.fileSize = result.copied.size;
    if (differ) {
        result.increment = true;
        result.fileSize = differ->fileSize();
        result.fileChecksum = differ->checksum();
    } else if (hasher && result.copied.status == FileCopier::Status::Done) {
        result.blockHashes = hasher->finish();
    }
    return result;
}

} // namespace NVB::Engine
