#include "filebackupjob.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <utility>

#include <QDir>

#include "accountfolder.h"
#include "actions/consistencycheck.h"
#include "core/bytename.h"
#include "filecopier.h"
#include "progress/transferscan.h"
#include "records/plan/planresult.h"
#include "runverdict.h"
#include "sourcefilecopy.h"
#include "walk/filestamp.h"

namespace NVB::Engine {

using FileStamp::nanoseconds;

using NVB::Info::Plan::PlanResult;

namespace {

// Entries written to the store at once: large enough that a transaction
// costs little per entry, small enough to keep the run's memory flat.
constexpr int StageBatch = 4096;

QDateTime fromTimespec(const struct timespec& time)
{
    return QDateTime::fromMSecsSinceEpoch(qint64(time.tv_sec) * 1000 + time.tv_nsec / 1000000, Qt::UTC);
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
          SourceWalk::Options {m_parameters.followFileSymlinks, m_parameters.oneFileSystem, m_parameters.neverTaken,
              m_parameters.skipSymlinks})
{ }

FileBackupJob::Result FileBackupJob::run(const std::atomic_bool& stop, const ProgressHandler& progress)
{
    m_pacer.start(progress);

    QString error;
    m_storage = FolderHandle::openAbsolute(NVL::ByteName::encode(m_parameters.storageRoot), &error);
    if (m_storage.isValid())
        m_runFolder = AccountFolder::makeRunFolder(m_storage, m_parameters.objectPrefix, &error);
    if (!m_runFolder.isValid()) {
        m_result.planResult = PlanResult::Failed;
        m_result.message = error;
        return std::move(m_result);
    }

    m_scan = std::make_unique<TransferScan>(m_selection,
        SourceWalk::Options {m_parameters.followFileSymlinks, m_parameters.oneFileSystem, m_parameters.neverTaken,
            m_parameters.skipSymlinks});
    m_scan->start(stop, m_parameters.expectedTotals);
    m_result.totals.transferStartMs = m_pacer.elapsed();
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
    m_result.previousChecked = m_parameters.checkPrevious && m_parameters.previousChildren && !m_previousUnread
        && m_unvisitedParents.isEmpty() && !stopped();
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
        m_targetFolder.clear();
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
        m_previousUnread = true;
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
        // A reused copy was looked up as it was reused; an increment also
        // needs its full version, which only the check looks at.
        if (it->object != item.object || isIncrement(it->encoding))
            checkPrevious(*it);
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
    for (auto it = previous.cbegin(); it != previous.cend(); ++it) {
        m_result.removed.append(it.key());
        checkPrevious(*it);
    }
}

void FileBackupJob::checkPrevious(const StoredContent& previous)
{
    if (!m_parameters.checkPrevious || previous.type != StoredContent::File || previous.object.isEmpty())
        return;
    m_result.previousProblems += ConsistencyCheck::problems(m_parameters.storageRoot, {previous});
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
        const FolderHandle* below = m_objectFolder.open(m_storage, object.left(slash), false, nullptr);
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

    const qint64 started = m_pacer.elapsed();
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
        = folderBelow.isEmpty() ? &m_runFolder : m_targetFolder.open(m_runFolder, folderBelow, true, &error);
    if (!target) {
        failStorage(path, error);
        return;
    }

    SourceFileCopy::Options options;
    options.followLink = followLink;
    options.skipInUseFiles = m_parameters.skipInUseFiles;
    options.encoding = encoding();
    options.key = m_parameters.key;
    options.blockSize = m_parameters.blockSize;
    options.fullAbovePercent = m_parameters.fullAbovePercent;
    if (m_parameters.blockSize > 0 && previous != previousEntries.cend())
        options.base = BlockBase::of(
            *previous, m_storage, m_parameters.blockSize, bool(m_parameters.key), m_parameters.blockMap);
    const SourceFileCopy::Result taken = SourceFileCopy::copy(encoded, path, *target, name, options, stop);
    const FileCopier::Result& copied = taken.copied;
    if (taken.status == SourceFileCopy::Status::Unreadable) {
        fail(path, taken.error, true);
        return;
    }
    if (taken.status == SourceFileCopy::Status::InUse) {
        skipInUse(path);
        return;
    }
    if (copied.status == FileCopier::Status::Stopped) {
        m_stopped = true;
        return;
    }
    if (copied.status != FileCopier::Status::Done) {
        if (copied.targetFailed)
            failStorage(path, copied.error);
        else
            fail(path, copied.error, true);
        return;
    }
    file.size = taken.fileSize;
    file.modifiedUtc = fromTimespec(taken.source.st_mtim);
    file.modifiedNs = nanoseconds(taken.source.st_mtim);
    file.changedNs = nanoseconds(taken.source.st_ctim);
    file.inode = taken.source.st_ino;
    takeOwnership(taken.source, &file);
    file.object = m_parameters.key
        ? QStringLiteral("%1/%2/%3")
              .arg(m_parameters.objectPrefix, QString::fromLatin1(folderBelow), QString::fromLatin1(name))
        : m_parameters.objectPrefix + path;
    file.checksum = copied.checksum;
    file.encoding = int(encoding());
    file.storedSize = encoding() != ObjectEncoding::Plain ? copied.storedSize : -1;
    if (taken.increment) {
        file.checksum = taken.fileChecksum;
        file.encoding |= int(ObjectEncoding::Increment);
        file.storedSize = copied.storedSize;
    } else if (taken.blockHashes) {
        m_result.blockMaps.append(BlockMap {
            file.object, file.checksum, file.encoding, m_parameters.blockSize, file.size, *taken.blockHashes});
    }
    ++totals.copiedCount;
    totals.copiedSize += copied.size;
    keep(file, previousEntries);

    RunFileRecord record = fileRecord(path, RunFileRecord::Copied);
    record.size = copied.size;
    record.modifiedUtc = file.modifiedUtc;
    record.durationMs = m_pacer.elapsed() - started;
    if (taken.unsteady) {
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
    RunFileRecord record = fileRecord(path, RunFileRecord::Skipped);
    record.message = QStringLiteral("%1 is in use by another process and was skipped").arg(path);
    if (m_result.message.isEmpty())
        m_result.message = record.message;
    m_result.files.append(record);
}

RunFileRecord FileBackupJob::fileRecord(const QString& path, int operation) const
{
    RunFileRecord record;
    record.planId = m_parameters.planId;
    record.planName = m_parameters.planName;
    record.file = path;
    record.operation = operation;
    record.finishUtc = QDateTime::currentDateTimeUtc();
    return record;
}

void FileBackupJob::fail(const QString& path, const QString& message, bool counted)
{
    ++m_result.totals.failedCount;
    if (!counted)
        ++m_result.totals.scannedCount;
    if (m_result.message.isEmpty())
        m_result.message = message;
    RunFileRecord record = fileRecord(path, RunFileRecord::Failed);
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
    m_pacer.report(&m_result.totals, m_scan.get(), force);
}

} // namespace NVB::Engine
