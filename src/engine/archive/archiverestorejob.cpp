#include "archiverestorejob.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <utility>

#include <QDir>
#include <QRandomGenerator>

#include "chunking/sha256stream.h"
#include "core/bytename.h"
#include "records/plan/planresult.h"
#include "repository/chunktransform.h"
#include "repository/packreader.h"
#include "repository/packreaderqueue.h"
#include "runs/filecopier.h"
#include "storage/filesystemdriver.h"

namespace NVB::Engine {

using NVB::Info::Plan::PlanResult;

namespace {

QString errnoText()
{
    return QString::fromLocal8Bit(std::strerror(errno));
}

QByteArray temporaryName()
{
    return FileCopier::temporaryPrefix() + QByteArray::number(QRandomGenerator::global()->generate64(), 16);
}

} // namespace

ArchiveRestoreJob::ArchiveRestoreJob(Parameters parameters)
    : m_parameters(std::move(parameters))
{
    for (QString& item : m_parameters.items)
        item = QDir::cleanPath(item);
}

ArchiveRestoreJob::~ArchiveRestoreJob() = default;

bool ArchiveRestoreJob::isChosen(const QString& path) const
{
    if (m_parameters.items.isEmpty())
        return true;
    return std::any_of(m_parameters.items.cbegin(), m_parameters.items.cend(), [&path](const QString& item) {
        return item == QLatin1String("/") || path == item
            || (path.startsWith(item) && path.at(item.size()) == QLatin1Char('/'));
    });
}

QString ArchiveRestoreJob::load()
{
    m_driver = m_parameters.driver;
    if (!m_driver) {
        m_ownDriver = std::make_unique<FileSystemDriver>(m_parameters.storageRoot);
        m_driver = m_ownDriver.get();
    }
    m_repository = std::make_unique<Repository>(m_driver, m_parameters.repositoryRoot);
    QString error;
    OpenedGeneration opened = m_repository->openGeneration(m_parameters.generation, m_parameters.password);
    if (!opened.transform)
        return opened.error;
    m_transform = std::move(opened.transform);
    m_identifier = opened.identifier;
    m_reader = std::make_unique<PackReader>(m_driver, m_transform.get(), &m_identifier);
    if (m_parameters.verifyOnly) {
        // A verify puts the generation in order as a run would.
        const Repository::Tidy tidy = m_repository->tidy(m_parameters.generation, *m_transform, m_identifier);
        m_result.removedPacks = tidy.removed;
    }
    m_tree = m_repository->readTree(m_parameters.generation, m_parameters.sequence, *m_transform, &error);
    if (!error.isEmpty())
        return error;
    bool complete = m_repository->loadIndex(m_parameters.generation, *m_transform, &m_index).isEmpty();
    for (const TreeEntry& entry : std::as_const(m_tree.entries)) {
        for (const QByteArray& id : entry.chunks)
            complete = complete && m_index.contains(id);
    }
    if (!complete) {
        // A lost or damaged index is rebuilt from the packs' own trailers;
        // only this restore's memory holds it, a run writes it back.
        m_index.clear();
        const StorageListing packs = m_driver->list(m_repository->packFolder(m_parameters.generation));
        if (!packs.ok())
            return packs.error;
        for (const StorageObjectInfo& pack : packs.objects) {
            const PackContents contents = m_reader->readTrailer(pack.key);
            for (const PackEntry& entry : contents.entries)
                m_index.insert(entry.id, {pack.key, entry});
        }
    }
    return {};
}

ArchiveRestoreJob::Result ArchiveRestoreJob::run(const std::atomic_bool& stop, const ProgressHandler& progress)
{
    m_clock.start();
    QString error = load();
    if (error.isEmpty() && !m_parameters.verifyOnly) {
        const bool inPlace = m_parameters.destination.isEmpty();
        m_target = FolderHandle::openAbsolute(
            inPlace ? QByteArrayLiteral("/") : NVL::ByteName::encode(m_parameters.destination), &error, inPlace);
    }
    if (!error.isEmpty()) {
        m_result.planResult = PlanResult::Failed;
        m_result.message = error;
        return std::move(m_result);
    }

    QList<const StoredContent*> folders;
    QList<const TreeEntry*> files;
    for (const TreeEntry& entry : std::as_const(m_tree.entries)) {
        const StoredContent& item = entry.item;
        if (!isChosen(item.path))
            continue;
        if (item.type == StoredContent::File) {
            files.append(&entry);
        } else if (m_parameters.verifyOnly) {
            continue;
        } else if (item.type == StoredContent::Folder) {
            const QByteArray folder = NVL::ByteName::encode(item.path);
            if (FolderHandle::isPlainAbsolute(folder) && folder != "/") {
                m_target.openBelow(folder.mid(1), true, nullptr);
                folders.append(&item);
            }
        } else {
            restoreLink(item);
        }
    }
    // In the order the data lies on the storage: pack by pack, and within a
    // pack by offset, so small files sharing packs are read front to back.
    const auto firstChunk = [this](const TreeEntry* entry) {
        const auto it = entry->chunks.isEmpty() ? m_index.cend() : m_index.constFind(entry->chunks.constFirst());
        return it == m_index.cend() ? qMakePair(QString(), qint64(-1)) : qMakePair(it->pack, it->entry.offset);
    };
    std::stable_sort(files.begin(), files.end(),
        [&firstChunk](const TreeEntry* a, const TreeEntry* b) { return firstChunk(a) < firstChunk(b); });
    startReading(files);
    qint64 lastReport = -1;
    for (const TreeEntry* entry : std::as_const(files)) {
        if (stop)
            break;
        m_owed = m_planned.contains(entry) ? entry->chunks.size() : 0;
        restoreFile(*entry, stop);
        // What the file did not take of its read-ahead (a skip, a failure);
        // a stop ends the reading instead.
        for (; m_owed > 0 && !stop; --m_owed)
            m_queue->next();
        const qint64 now = m_clock.elapsed();
        if (progress && (lastReport < 0 || now - lastReport >= 100)) {
            lastReport = now;
            m_result.totals.elapsedMs = now;
            progress(m_result.totals);
        }
    }
    m_queue.reset();
    m_parentFolder.clear();
    // Deepest first, after their content: restoring files changed their
    // times, and a read-only folder could not have taken them.
    for (auto it = folders.crbegin(); it != folders.crend() && !stop; ++it) {
        const FolderHandle folder = m_target.openBelow(NVL::ByteName::encode((*it)->path).mid(1), false, nullptr);
        if (folder.isValid())
            applyOwnership(folder.fd(), nullptr, **it);
    }
    RunProgress& totals = m_result.totals;
    totals.scanning = false;
    totals.currentFile.clear();
    totals.elapsedMs = m_clock.elapsed();
    if (progress)
        progress(totals);
    m_result.damagedPacks.removeDuplicates();
    if (stop) {
        m_result.planResult = PlanResult::Interrupted;
        m_result.message = QStringLiteral("The run was stopped");
    } else if (totals.scannedCount == 0 && !m_parameters.items.isEmpty()) {
        m_result.planResult = PlanResult::Failed;
        m_result.message = QStringLiteral("None of the chosen items is in the restore point");
    } else if (totals.failedCount > 0) {
        // A verify that finds damage fails, as the legacy verify does; a
        // restore that saved some files warns.
        m_result.planResult = m_parameters.verifyOnly || totals.failedCount == totals.scannedCount
            ? PlanResult::Failed
            : PlanResult::Warning;
        if (!m_result.damagedPacks.isEmpty())
            m_result.message = QStringLiteral("%1 files are damaged on the storage; damaged packs: %2")
                                   .arg(totals.failedCount)
                                   .arg(m_result.damagedPacks.join(QStringLiteral(", ")));
    } else {
        m_result.planResult = PlanResult::Success;
    }
    return std::move(m_result);
}

QString ArchiveRestoreJob::writeData(int fd, const TreeEntry& entry, const std::atomic_bool& stop)
{
    Sha256Stream checksum;
    qint64 size = 0;
    for (const QByteArray& id : entry.chunks) {
        if (stop)
            return QStringLiteral("stopped");
        const auto location = m_index.constFind(id);
        if (location == m_index.cend() && m_owed > 0) {
            --m_owed;
            m_queue->next();
        }
        if (location == m_index.cend())
            return QStringLiteral("The data of %1 is missing from the storage (chunk %2 is in no pack)")
                .arg(entry.item.path, QString::fromLatin1(id.toHex().left(16)));
        const ChunkData chunk = takeChunk(*location);
        if (!chunk.ok()) {
            m_result.damagedPacks.append(location->pack);
            return QStringLiteral("%1 cannot be restored: %2").arg(entry.item.path, chunk.error);
        }
        checksum.add(chunk.data);
        size += chunk.data.size();
        for (qint64 done = 0; fd >= 0 && done < chunk.data.size();) {
            const ssize_t written = ::write(fd, chunk.data.constData() + done, size_t(chunk.data.size() - done));
            if (written < 0 && errno == EINTR)
                continue;
            if (written <= 0)
                return QStringLiteral("Cannot write %1: %2").arg(entry.item.path, errnoText());
            done += written;
        }
    }
    if (size != entry.item.size || (!entry.item.checksum.isEmpty() && checksum.result() != entry.item.checksum))
        return QStringLiteral("%1 does not match its recorded checksum").arg(entry.item.path);
    return {};
}

void ArchiveRestoreJob::restoreFile(const TreeEntry& entry, const std::atomic_bool& stop)
{
    const StoredContent& file = entry.item;
    RunProgress& totals = m_result.totals;
    ++totals.scannedCount;
    totals.scannedSize += file.size;
    totals.currentFile = file.path;

    if (m_parameters.verifyOnly) {
        const QString problem = writeData(-1, entry, stop);
        if (stop)
            return;
        if (!problem.isEmpty()) {
            failed(file, problem);
            return;
        }
        ++totals.copiedCount;
        totals.copiedSize += file.size;
        return;
    }
    // A stored path that climbs out of its folder is never followed,
    // whatever wrote it into the tree.
    const QByteArray path = NVL::ByteName::encode(file.path);
    if (!FolderHandle::isPlainAbsolute(path) || path == "/") {
        failed(file, QStringLiteral("The stored path %1 is refused: it is not a plain absolute path").arg(file.path));
        return;
    }
    const int slash = path.lastIndexOf('/');
    const QByteArray name = path.mid(slash + 1);
    const QByteArray parent = path.mid(1, qMax(0, slash - 1));
    QString error;
    // Files of one folder follow each other in pack order: the folder is
    // opened once for all of them.
    const FolderHandle* parentFolder
        = parent.isEmpty() ? &m_target : m_parentFolder.open(m_target, parent, true, &error);
    if (!parentFolder) {
        failed(file, error);
        return;
    }
    const FolderHandle& target = *parentFolder;
    const QString kept = keptReason(target.fd(), name, file);
    if (!kept.isEmpty()) {
        record(file, RunFileRecord::Skipped, kept);
        return;
    }

    // Written unnamed (or under a fresh name) and named only once whole and
    // checked, so a failed or stopped restore never leaves half a file and
    // never truncates the user's own.
    QByteArray temporary;
    bool unnamed = true;
    int fd = ::openat(target.fd(), ".", O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600);
    if (fd < 0) {
        unnamed = false;
        for (int attempt = 0; attempt < 16 && fd < 0; ++attempt) {
            temporary = temporaryName();
            fd = ::openat(
                target.fd(), temporary.constData(), O_CREAT | O_EXCL | O_WRONLY | O_NOFOLLOW | O_CLOEXEC, 0600);
            if (fd < 0 && errno != EEXIST)
                break;
        }
    }
    if (fd < 0) {
        failed(file, QStringLiteral("Cannot write %1: %2").arg(file.path, errnoText()));
        return;
    }
    QString problem = writeData(fd, entry, stop);
    if (problem.isEmpty()) {
        if (::geteuid() == 0 && file.owner >= 0 && file.group >= 0)
            ::fchown(fd, uid_t(file.owner), gid_t(file.group));
        ::fchmod(fd, file.mode != 0 ? file.mode : 0600);
        const struct timespec times[2]
            = {{0, UTIME_OMIT}, {time_t(file.modifiedNs / 1000000000), long(file.modifiedNs % 1000000000)}};
        ::futimens(fd, times);
    }
    bool inPlace = false;
    if (problem.isEmpty() && unnamed) {
        const QByteArray self = "/proc/self/fd/" + QByteArray::number(fd);
        // Most restores go to names that do not exist yet: the file gets its
        // own name at once, and linkat never replaces what is there, so the
        // rename is needed only over an existing file.
        inPlace = ::linkat(AT_FDCWD, self.constData(), target.fd(), name.constData(), AT_SYMLINK_FOLLOW) == 0;
        bool linked = inPlace;
        for (int attempt = 0; attempt < 16 && !linked; ++attempt) {
            temporary = temporaryName();
            linked = ::linkat(AT_FDCWD, self.constData(), target.fd(), temporary.constData(), AT_SYMLINK_FOLLOW) == 0;
            if (!linked && errno != EEXIST)
                break;
        }
        if (!linked) {
            temporary.clear();
            problem = QStringLiteral("Cannot name %1: %2").arg(file.path, errnoText());
        }
    }
    ::close(fd);
    if (problem.isEmpty() && !inPlace
        && ::renameat(target.fd(), temporary.constData(), target.fd(), name.constData()) != 0)
        problem = QStringLiteral("Cannot put %1 in place: %2").arg(file.path, errnoText());
    if (!problem.isEmpty()) {
        if (!temporary.isEmpty())
            ::unlinkat(target.fd(), temporary.constData(), 0);
        if (!stop)
            failed(file, problem);
        return;
    }
    ++totals.copiedCount;
    totals.copiedSize += file.size;
    record(file, RunFileRecord::Restored, QString());
}

QString ArchiveRestoreJob::keptReason(int folder, const QByteArray& name, const StoredContent& file) const
{
    if (!m_parameters.skipExistingFiles && !m_parameters.onlyNewFiles)
        return {};
    struct stat existing
    {
    };
    if (::fstatat(folder, name.constData(), &existing, AT_SYMLINK_NOFOLLOW) != 0)
        return {};
    if (m_parameters.skipExistingFiles)
        return QStringLiteral("The file exists");
    const qint64 existingNs = qint64(existing.st_mtim.tv_sec) * 1000000000 + existing.st_mtim.tv_nsec;
    if (existingNs >= file.modifiedNs)
        return QStringLiteral("The file on disk is as new");
    return {};
}

void ArchiveRestoreJob::startReading(const QList<const TreeEntry*>& files)
{
    // Files the user's own copies will keep are left out of the read-ahead;
    // looked at again when their turn comes, so a file that appears or
    // disappears meanwhile is still judged by what is on disk then.
    const bool mayKeep = !m_parameters.verifyOnly && (m_parameters.skipExistingFiles || m_parameters.onlyNewFiles);
    FolderCache folders;
    QVector<PackReaderQueue::Item> items;
    for (const TreeEntry* entry : files) {
        if (mayKeep) {
            const QByteArray path = NVL::ByteName::encode(entry->item.path);
            const int slash = path.lastIndexOf('/');
            const QByteArray parent = path.mid(1, qMax(0, slash - 1));
            const FolderHandle* folder = parent.isEmpty() || !FolderHandle::isPlainRelative(parent)
                ? &m_target
                : folders.open(m_target, parent, false, nullptr);
            if (folder && !keptReason(folder->fd(), path.mid(slash + 1), entry->item).isEmpty())
                continue;
        }
        m_planned.insert(entry);
        for (const QByteArray& id : entry->chunks) {
            const auto location = m_index.constFind(id);
            items.append(location == m_index.cend() ? PackReaderQueue::Item {}
                                                    : PackReaderQueue::Item {location->pack, location->entry});
        }
    }
    m_queue = std::make_unique<PackReaderQueue>(m_reader.get(), std::move(items));
}

ChunkData ArchiveRestoreJob::takeChunk(const ChunkLocation& location)
{
    if (m_owed <= 0)
        return m_reader->readChunk(location.pack, location.entry);
    --m_owed;
    return m_queue->next();
}

void ArchiveRestoreJob::restoreLink(const StoredContent& link)
{
    ++m_result.totals.scannedCount;
    const QByteArray path = NVL::ByteName::encode(link.path);
    if (!FolderHandle::isPlainAbsolute(path) || path == "/") {
        failed(link, QStringLiteral("The stored path %1 is refused: it is not a plain absolute path").arg(link.path));
        return;
    }
    const int slash = path.lastIndexOf('/');
    const QByteArray name = path.mid(slash + 1);
    const QByteArray parent = path.mid(1, qMax(0, slash - 1));
    QString error;
    const FolderHandle folder = parent.isEmpty() ? m_target.duplicate() : m_target.openBelow(parent, true, &error);
    if (!folder.isValid()) {
        failed(link, error);
        return;
    }
    struct stat existing
    {
    };
    if (m_parameters.skipExistingFiles
        && ::fstatat(folder.fd(), name.constData(), &existing, AT_SYMLINK_NOFOLLOW) == 0) {
        record(link, RunFileRecord::Skipped, QStringLiteral("The file exists"));
        return;
    }
    const QByteArray target = NVL::ByteName::encode(link.linkTarget);
    QByteArray temporary;
    for (int attempt = 0; attempt < 16 && temporary.isEmpty(); ++attempt) {
        const QByteArray candidate = temporaryName();
        if (::symlinkat(target.constData(), folder.fd(), candidate.constData()) == 0)
            temporary = candidate;
        else if (errno != EEXIST)
            break;
    }
    if (!temporary.isEmpty() && ::renameat(folder.fd(), temporary.constData(), folder.fd(), name.constData()) == 0) {
        applyOwnership(folder.fd(), name.constData(), link);
        ++m_result.totals.copiedCount;
        record(link, RunFileRecord::Restored, QString());
        return;
    }
    if (!temporary.isEmpty())
        ::unlinkat(folder.fd(), temporary.constData(), 0);
    failed(link, QStringLiteral("Cannot make the link %1: %2").arg(link.path, errnoText()));
}

void ArchiveRestoreJob::applyOwnership(int folder, const char* name, const StoredContent& item)
{
    const int flags = name ? AT_SYMLINK_NOFOLLOW : AT_EMPTY_PATH;
    const char* what = name ? name : "";
    if (::geteuid() == 0 && item.owner >= 0 && item.group >= 0)
        ::fchownat(folder, what, uid_t(item.owner), gid_t(item.group), flags);
    if (item.mode != 0 && item.type != StoredContent::Link && !name)
        ::fchmod(folder, item.mode & 07777);
    const struct timespec times[2]
        = {{0, UTIME_OMIT}, {time_t(item.modifiedNs / 1000000000), long(item.modifiedNs % 1000000000)}};
    if (name)
        ::utimensat(folder, name, times, AT_SYMLINK_NOFOLLOW);
    else
        ::futimens(folder, times);
}

void ArchiveRestoreJob::failed(const StoredContent& item, const QString& message)
{
    ++m_result.totals.failedCount;
    if (m_result.message.isEmpty())
        m_result.message = message;
    record(item, RunFileRecord::Failed, message);
}

void ArchiveRestoreJob::record(const StoredContent& item, int operation, const QString& message)
{
    if (m_parameters.verifyOnly && operation != RunFileRecord::Failed)
        return;
    RunFileRecord record;
    record.planId = m_parameters.planId;
    record.planName = m_parameters.planName;
    record.file = item.path;
    record.operation = operation;
    record.size = item.size;
    record.modifiedUtc = item.modifiedUtc;
    record.finishUtc = QDateTime::currentDateTimeUtc();
    record.message = message;
    m_result.files.append(record);
}

} // namespace NVB::Engine
