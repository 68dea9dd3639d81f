#include "filebackupjob.h"

#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <utility>

#include <QDir>

#include "actions/consistencycheck.h"
#include "blocks/blockdiffer.h"
#include "blocks/blockhasher.h"
#include "blocks/incrementheader.h"
#include "core/bytename.h"
#include "filecopier.h"
#include "filters/inusecheck.h"
#include "progress/transferscan.h"
#include "records/plan/planresult.h"
#include "runverdict.h"

namespace NVB::Engine {

using NVB::Info::Plan::PlanResult;

namespace {

// Entries written to the store at once: large enough that a transaction
// costs little per entry, small enough to keep the run's memory flat.
constexpr int StageBatch = 4096;

qint64 nanoseconds(const struct timespec& time)
{
    return qint64(time.tv_sec) * 1000000000 + time.tv_nsec;
}

QDateTime fromTimespec(const struct timespec& time)
{
    return QDateTime::fromMSecsSinceEpoch(qint64(time.tv_sec) * 1000 + time.tv_nsec / 1000000, Qt::UTC);
}

// What must not move while a file is read for its copy to be good.
bool sameFile(const struct stat& a, const struct stat& b)
{
    return a.st_size == b.st_size && a.st_ino == b.st_ino && a.st_dev == b.st_dev
        && nanoseconds(a.st_mtim) == nanoseconds(b.st_mtim) && nanoseconds(a.st_ctim) == nanoseconds(b.st_ctim);
}

void takeOwnership(const struct stat& info, StoredContent* item)
{
    item->mode = info.st_mode & 07777;
    item->owner = info.st_uid;
    item->group = info.st_gid;
}

} // namespace

FileBackupJob::FileBackupJob(Parameters parameters, FileSelection selection)
    : m_parameters(std::move(parameters))
    , m_selection(std::move(selection))
    , m_walk(m_selection,
          SourceWalk::Options {m_parameters.followFileSymlinks, m_parameters.oneFileSystem, m_parameters.neverTaken, m_parameters.skipSymlinks})
{ }

FileBackupJob::Result FileBackupJob::run(const std::atomic_bool& stop, const ProgressHandler& progress)
{
    m_progress = progress;
    m_clock.start();

    QString error;
    m_storage = FolderHandle::openAbsolute(NVL::ByteName::encode(m_parameters.storageRoot), &error);
    const QByteArray runFolder = NVL::ByteName::encode(m_parameters.objectPrefix);
    if (m_storage.isValid()) {
        // The run's folder is new: an existing one belongs to another run
        // and is never written into.
        const int slash = runFolder.lastIndexOf('/');
        FolderHandle parent = slash > 0 ? m_storage.openBelow(runFolder.left(slash), true, &error) : FolderHandle();
        if (parent.isValid()) {
            const QByteArray last = runFolder.mid(slash + 1);
            if (::mkdirat(parent.fd(), last.constData(), 0700) != 0) {
                error = QStringLiteral("Cannot make the run's folder %1: %2")
                            .arg(m_parameters.objectPrefix, QString::fromLocal8Bit(std::strerror(errno)));
            } else {
                m_runFolder = parent.openBelow(last, false, &error);
            }
        }
    }
    if (!m_runFolder.isValid()) {
        m_result.planResult = PlanResult::Failed;
        m_result.message = error;
        return std::move(m_result);
    }

    m_scan = std::make_unique<TransferScan>(m_selection,
        SourceWalk::Options {m_parameters.followFileSymlinks, m_parameters.oneFileSystem, m_parameters.neverTaken, m_parameters.skipSymlinks});
    m_scan->start(stop);
    m_result.totals.transferStartMs = m_clock.elapsed();
    report(true);
    const QStringList previousParents = m_parameters.previousParents;
    m_unvisitedParents = QSet<QString>(previousParents.cbegin(), previousParents.cend());
    m_stop = &stop;
    m_walk.walk(*this);
    for (const auto& [parent, previous] : m_rootParents)
        dropUnseen(previous);
    // Folders the walk never reached are gone, or no longer taken.
    for (const QString& parent : std::as_const(m_unvisitedParents))
        m_result.emptiedFolders.append(parent);
    finishResult(stop);
    return std::move(m_result);
}

void FileBackupJob::finishResult(const std::atomic_bool& stop)
{
    RunProgress& totals = m_result.totals;
    totals.scanning = false;
    // The count is of no use once the walk has ended.
    if (m_scan)
        m_scan->fill(&totals, true);
    m_scan.reset();
    totals.currentFile.clear();
    m_result.planResult
        = RunVerdict::judge(totals, m_storageError, stop || m_stopped, m_result.unsteadyCount, &m_result.message);

    if (m_result.planResult == PlanResult::Success || m_result.planResult == PlanResult::Warning) {
        // Every copy reaches the disk before the restore point that names it
        // is committed. A run that copied nothing names only objects whose
        // own points were flushed before they were committed; flushing the
        // whole file system then would only wait for other programs' writes.
        if (m_result.totals.copiedCount > 0 && ::syncfs(m_storage.fd()) != 0) {
            m_result.planResult = PlanResult::Failed;
            m_result.message = QStringLiteral("Cannot flush the copies to the storage %1: %2")
                                   .arg(m_parameters.storageRoot, QString::fromLocal8Bit(std::strerror(errno)));
        }
    }
    if (m_result.planResult != PlanResult::Success && m_result.planResult != PlanResult::Warning) {
        // Nothing will refer to this run's copies.
        m_runFolder = FolderHandle();
        m_targetFolder = CachedFolder();
        QDir(m_parameters.storageRoot + QLatin1Char('/') + m_parameters.objectPrefix).removeRecursively();
        m_result.content.clear();
        m_result.removed.clear();
        m_result.emptiedFolders.clear();
    }
    report(true);
}

bool FileBackupJob::stopped() const
{
    return *m_stop || m_stopped;
}

void FileBackupJob::failed(const QString& path, const QString& message)
{
    fail(path, message);
}

void FileBackupJob::beginRoot(const QString& root)
{
    // Roots are compared with the previous point's entries of their parent
    // folders, which the walk itself never reads.
    StoredContent rootItem;
    rootItem.path = root;
    const QString parent = rootItem.parentPath();
    auto it = m_rootParents.find(parent);
    if (it == m_rootParents.end())
        it = m_rootParents.emplace(parent, previousBelow(parent)).first;
    m_rootPrevious = &it->second;
}

FileBackupJob::PreviousEntries& FileBackupJob::currentPrevious()
{
    return m_previousStack.empty() ? *m_rootPrevious : m_previousStack.back();
}

void FileBackupJob::file(const QString& path, const struct stat& info, bool followedLink)
{
    takeFile(path, info, followedLink, *m_stop, currentPrevious());
}

void FileBackupJob::link(const QString& path, const struct stat& info, const QString& target)
{
    StoredContent link;
    link.path = path;
    link.type = StoredContent::Link;
    link.modifiedUtc = fromTimespec(info.st_mtim);
    link.modifiedNs = nanoseconds(info.st_mtim);
    link.linkTarget = target;
    takeOwnership(info, &link);
    keep(link, currentPrevious());
}

void FileBackupJob::enterFolder(const QString& path, const struct stat& info, bool isRoot)
{
    if (isRoot)
        takeFolder(path, info, currentPrevious());
    m_keptBefore.push_back(m_kept);
}

void FileBackupJob::leaveFolder(const QString& path, const struct stat& info, bool isRoot)
{
    const qint64 before = m_keptBefore.back();
    m_keptBefore.pop_back();
    // A folder with nothing taken below it is kept only when asked to.
    if (!isRoot && (m_parameters.backupEmptyFolders || m_kept > before))
        takeFolder(path, info, currentPrevious());
}

void FileBackupJob::folderOpened(const QString& folder)
{
    m_previousStack.push_back(previousBelow(folder));
}

void FileBackupJob::folderClosed(const QString& folder)
{
    Q_UNUSED(folder)
    dropUnseen(m_previousStack.back());
    m_previousStack.pop_back();
}

FileBackupJob::PreviousEntries FileBackupJob::previousBelow(const QString& folder)
{
    PreviousEntries entries;
    if (!m_parameters.previousChildren)
        return entries;
    m_unvisitedParents.remove(folder);
    const auto children = m_parameters.previousChildren(folder);
    if (!children) {
        // Unknown, so none of it carries over; what is there now is taken anew.
        m_result.emptiedFolders.append(folder);
        return entries;
    }
    entries.reserve(children->size());
    for (const StoredContent& child : *children)
        entries.insert(child.path, child);
    return entries;
}

void FileBackupJob::keep(const StoredContent& item, PreviousEntries& previous)
{
    ++m_kept;
    const auto it = previous.find(item.path);
    if (it != previous.end()) {
        const bool same = it->sameRecord(item);
        previous.erase(it);
        if (same)
            return;
    }
    m_result.content.append(item);
    if (m_parameters.stageContent && m_result.content.size() >= StageBatch && m_storageError.isEmpty()) {
        if (!m_parameters.stageContent(m_result.content)) {
            m_storageError = QStringLiteral("The run's entries cannot be recorded in the engine's store");
            m_stopped = true;
        }
        m_result.content.clear();
    }
}

void FileBackupJob::dropUnseen(const PreviousEntries& previous)
{
    for (auto it = previous.cbegin(); it != previous.cend(); ++it)
        m_result.removed.append(it.key());
}

void FileBackupJob::takeFolder(const QString& path, const struct stat& info, PreviousEntries& previous)
{
    StoredContent folder;
    folder.path = path;
    folder.type = StoredContent::Folder;
    folder.modifiedUtc = fromTimespec(info.st_mtim);
    folder.modifiedNs = nanoseconds(info.st_mtim);
    takeOwnership(info, &folder);
    keep(folder, previous);
}

bool FileBackupJob::reusable(const StoredContent& previous, const StoredContent& now)
{
    // A plain copy is no copy for an enciphered plan, nor the reverse.
    if (isEnciphered(ObjectEncoding(previous.encoding)) != bool(m_parameters.key))
        return false;
    if (previous.type != StoredContent::File || previous.object.isEmpty() || previous.size != now.size
        || previous.modifiedNs != now.modifiedNs || previous.changedNs != now.changedNs || previous.inode != now.inode)
        return false;
    // The earlier copy must still be whole: a copy lost or cut short on the
    // storage is made again.
    const QByteArray object = NVL::ByteName::encode(previous.object);
    const int slash = object.lastIndexOf('/');
    const QByteArray name = object.mid(slash + 1);
    if (name.isEmpty() || name == "." || name == "..")
        return false;
    int folder = m_storage.fd();
    if (slash >= 0) {
        const FolderHandle* below = cachedFolder(m_storage, object.left(slash), false, &m_objectFolder, nullptr);
        if (!below)
            return false;
        folder = below->fd();
    }
    struct stat stored
    {
    };
    const qint64 expected = previous.storedSize >= 0 ? previous.storedSize : previous.size;
    if (::fstatat(folder, name.constData(), &stored, AT_SYMLINK_NOFOLLOW) != 0 || !S_ISREG(stored.st_mode)
        || stored.st_size != expected)
        return false;
    m_result.checkedObjects.push_back(ConsistencyCheck::checkedKey(previous.object, expected));
    return true;
}

const FolderHandle* FileBackupJob::cachedFolder(
    const FolderHandle& base, const QByteArray& relative, bool create, CachedFolder* cache, QString* error)
{
    // Files of one folder follow each other in the walk, and so do their
    // objects: each folder is opened once, not once per file.
    if (!cache->handle.isValid() || cache->relative != relative) {
        cache->relative = relative;
        cache->handle = base.openBelow(relative, create, error);
    }
    return cache->handle.isValid() ? &cache->handle : nullptr;
}

void FileBackupJob::takeFile(const QString& path, const struct stat& seen, bool followLink,
    const std::atomic_bool& stop, PreviousEntries& previousEntries)
{
    RunProgress& totals = m_result.totals;
    ++totals.scannedCount;
    totals.scannedSize += seen.st_size;
    totals.currentFile = path;

    StoredContent file;
    file.path = path;
    file.type = StoredContent::File;
    file.size = seen.st_size;
    file.modifiedUtc = fromTimespec(seen.st_mtim);
    file.modifiedNs = nanoseconds(seen.st_mtim);
    file.changedNs = nanoseconds(seen.st_ctim);
    file.inode = seen.st_ino;
    takeOwnership(seen, &file);

    const auto previous = previousEntries.constFind(path);
    const bool forced
        = m_parameters.reBackupModifiedSince.isValid() && file.modifiedUtc >= m_parameters.reBackupModifiedSince;
    if (!forced && previous != previousEntries.cend() && reusable(*previous, file)) {
        file.object = previous->object;
        file.checksum = previous->checksum;
        file.encoding = previous->encoding;
        file.storedSize = previous->storedSize;
        keep(file, previousEntries);
        report(false);
        return;
    }

    const qint64 started = m_clock.elapsed();
    const QByteArray encoded = NVL::ByteName::encode(path);
    const int slash = encoded.lastIndexOf('/');
    QByteArray name = encoded.mid(slash + 1);
    QByteArray folderBelow = encoded.mid(1, qMax(0, slash - 1));
    if (m_parameters.key) {
        // An enciphered plan shows no file names on the storage.
        name = m_parameters.key->objectName(path);
        folderBelow = name.left(2);
    }
    QString error;
    const FolderHandle* target
        = folderBelow.isEmpty() ? &m_runFolder : cachedFolder(m_runFolder, folderBelow, true, &m_targetFolder, &error);
    if (!target) {
        failStorage(path, error);
        return;
    }

    FileCopier::Result copied;
    bool unsteady = false;
    std::optional<BlockMap> base;
    if (m_parameters.blockSize > 0 && previous != previousEntries.cend())
        base = BlockBase::of(
            *previous, m_storage, m_parameters.blockSize, bool(m_parameters.key), m_parameters.blockMap);
    std::unique_ptr<BlockDiffer> differ;
    std::unique_ptr<BlockHasher> hasher;
    for (int attempt = 0; attempt < 2; ++attempt) {
        const int fd = ::open(encoded.constData(), O_RDONLY | O_CLOEXEC | O_NOCTTY | (followLink ? 0 : O_NOFOLLOW));
        if (fd < 0) {
            fail(path, QStringLiteral("Cannot read %1: %2").arg(path, QString::fromLocal8Bit(std::strerror(errno))),
                true);
            return;
        }
        struct stat before
        {
        };
        if (::fstat(fd, &before) != 0 || !S_ISREG(before.st_mode)) {
            ::close(fd);
            fail(path, QStringLiteral("%1 is not a regular file").arg(path), true);
            return;
        }
        if (m_parameters.skipInUseFiles && InUseCheck::isInUse(fd)) {
            ::close(fd);
            skipInUse(path);
            return;
        }
        FileCopier::Options options;
        options.times[0] = before.st_atim;
        options.times[1] = before.st_mtim;
        options.mode = before.st_mode;
        options.writeEncoding = encoding();
        options.writeKey = m_parameters.key;
        // The first read of a file that changes under it is thrown away and
        // made again; the second is kept, with a warning that names it.
        const bool lastAttempt = attempt == 1 && !m_parameters.skipInUseFiles;
        options.keep = [fd, &before, &unsteady, lastAttempt] {
            struct stat after
            {
            };
            const bool steady = ::fstat(fd, &after) == 0 && sameFile(before, after);
            unsteady = !steady;
            return steady || lastAttempt;
        };
        differ.reset();
        hasher.reset();
        if (base) {
            const qint64 limit
                = m_parameters.fullAbovePercent >= 0 ? before.st_size * m_parameters.fullAbovePercent / 100 : -1;
            differ = std::make_unique<BlockDiffer>(fd, *base, limit);
            options.source
                = [&differ](char* data, size_t size, QString* error) { return differ->read(data, size, error); };
            options.prologue = IncrementHeader {m_parameters.blockSize, base->encoding, base->object}.toBytes();
        } else if (m_parameters.blockSize > 0) {
            hasher = std::make_unique<BlockHasher>(m_parameters.blockSize);
            options.observe = [&hasher](const char* data, size_t size) { hasher->add(data, size); };
        }
        copied = FileCopier::copy(fd, *target, name, options, &stop, path);
        ::close(fd);
        if (differ && differ->overLimit()) {
            // Too much changed for an increment to pay: the file gets a new
            // full version, which later increments build on.
            base.reset();
            --attempt;
            continue;
        }
        if (copied.status != FileCopier::Status::Discarded) {
            file.size = differ ? differ->fileSize() : copied.size;
            file.modifiedUtc = fromTimespec(before.st_mtim);
            file.modifiedNs = nanoseconds(before.st_mtim);
            file.changedNs = nanoseconds(before.st_ctim);
            file.inode = before.st_ino;
            takeOwnership(before, &file);
            break;
        }
    }
    if (copied.status == FileCopier::Status::Stopped) {
        m_stopped = true;
        return;
    }
    if (copied.status == FileCopier::Status::Discarded) {
        skipInUse(path);
        return;
    }
    if (copied.status != FileCopier::Status::Done) {
        if (copied.targetFailed)
            failStorage(path, copied.error);
        else
            fail(path, copied.error, true);
        return;
    }
    file.object = m_parameters.key ? QStringLiteral("%1/%2/%3").arg(m_parameters.objectPrefix,
                                         QString::fromLatin1(folderBelow), QString::fromLatin1(name))
                                   : m_parameters.objectPrefix + path;
    file.checksum = copied.checksum;
    file.encoding = int(encoding());
    file.storedSize = encoding() != ObjectEncoding::Plain ? copied.storedSize : -1;
    if (differ) {
        file.checksum = differ->checksum();
        file.encoding |= int(ObjectEncoding::Increment);
        file.storedSize = copied.storedSize;
    } else if (hasher) {
        m_result.blockMaps.append(
            BlockMap {file.object, file.checksum, file.encoding, m_parameters.blockSize, file.size, hasher->finish()});
    }
    ++totals.copiedCount;
    totals.copiedSize += copied.size;
    keep(file, previousEntries);

    RunFileRecord record;
    record.planId = m_parameters.planId;
    record.planName = m_parameters.planName;
    record.file = path;
    record.operation = RunFileRecord::Copied;
    record.size = copied.size;
    record.modifiedUtc = file.modifiedUtc;
    record.finishUtc = QDateTime::currentDateTimeUtc();
    record.durationMs = m_clock.elapsed() - started;
    if (unsteady) {
        ++m_result.unsteadyCount;
        record.message = QStringLiteral("%1 changed while it was read; the copy may be inconsistent").arg(path);
        if (m_result.message.isEmpty())
            m_result.message = record.message;
    }
    m_result.files.append(record);
    report(false);
}

ObjectEncoding FileBackupJob::encoding() const
{
    return ObjectEncoding((m_parameters.compress ? int(ObjectEncoding::Zstd) : 0)
        | (m_parameters.key ? int(ObjectEncoding::Enciphered) : 0));
}

void FileBackupJob::skipInUse(const QString& path)
{
    ++m_result.unsteadyCount;
    RunFileRecord record;
    record.planId = m_parameters.planId;
    record.planName = m_parameters.planName;
    record.file = path;
    record.operation = RunFileRecord::Skipped;
    record.finishUtc = QDateTime::currentDateTimeUtc();
    record.message = QStringLiteral("%1 is in use by another process and was skipped").arg(path);
    if (m_result.message.isEmpty())
        m_result.message = record.message;
    m_result.files.append(record);
}

void FileBackupJob::fail(const QString& path, const QString& message, bool counted)
{
    ++m_result.totals.failedCount;
    if (!counted)
        ++m_result.totals.scannedCount;
    if (m_result.message.isEmpty())
        m_result.message = message;
    RunFileRecord record;
    record.planId = m_parameters.planId;
    record.planName = m_parameters.planName;
    record.file = path;
    record.operation = RunFileRecord::Failed;
    record.finishUtc = QDateTime::currentDateTimeUtc();
    record.message = message;
    m_result.files.append(record);
}

void FileBackupJob::failStorage(const QString& path, const QString& message)
{
    fail(path, message, true);
    // A storage that cannot take one file (full, gone, read-only) will not
    // take the next: the run ends here rather than failing every file.
    m_storageError = QStringLiteral("The storage cannot be written, the run was abandoned: %1").arg(message);
    m_stopped = true;
}

void FileBackupJob::report(bool force)
{
    const qint64 now = m_clock.elapsed();
    if (!m_progress || (!force && m_lastReport >= 0 && now - m_lastReport < 100))
        return;
    if (m_scan)
        m_scan->fill(&m_result.totals, false);
    m_lastReport = now;
    m_result.totals.elapsedMs = now;
    m_progress(m_result.totals);
}

} // namespace NVB::Engine
