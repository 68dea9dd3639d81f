#include "archivebackupjob.h"

#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <utility>

#include <QDir>
#include <QtConcurrent>

#include "chunking/sha256stream.h"
#include "core/bytename.h"
#include "encryption/objectkey.h"
#include "progress/transferscan.h"
#include "records/plan/planresult.h"
#include "repository/generationkey.h"
#include "repository/identitytransform.h"
#include "repository/packwriter.h"
#include "repository/repository.h"
#include "repository/zstdtransform.h"
#include "runs/runverdict.h"
#include "storage/filesystemdriver.h"
#include "store/chunkindexstore.h"
#include "store/storedatabase.h"
#include "treechanges.h"

namespace NVB::Engine {

using NVB::Info::Plan::PlanResult;

namespace {

// Large enough that a read costs little, small enough that a stop is seen
// within a fraction of a second even on a slow disk.
constexpr qint64 ReadSize = 1024 * 1024;

qint64 nanoseconds(const struct timespec& time)
{
    return qint64(time.tv_sec) * 1000000000 + time.tv_nsec;
}

bool sameFile(const struct stat& a, const struct stat& b)
{
    return a.st_size == b.st_size && a.st_ino == b.st_ino && a.st_dev == b.st_dev
        && nanoseconds(a.st_mtim) == nanoseconds(b.st_mtim) && nanoseconds(a.st_ctim) == nanoseconds(b.st_ctim);
}

void describe(const struct stat& info, StoredContent* item)
{
    item->modifiedNs = nanoseconds(info.st_mtim);
    item->modifiedUtc = QDateTime::fromMSecsSinceEpoch(item->modifiedNs / 1000000, Qt::UTC);
    item->mode = info.st_mode & 07777;
    item->owner = info.st_uid;
    item->group = info.st_gid;
    if (item->type == StoredContent::File) {
        item->size = info.st_size;
        item->changedNs = nanoseconds(info.st_ctim);
        item->inode = info.st_ino;
    }
}

} // namespace

ArchiveBackupJob::ArchiveBackupJob(Parameters parameters, FileSelection selection)
    : m_parameters(std::move(parameters))
    , m_selection(std::move(selection))
    , m_walk(m_selection,
          SourceWalk::Options {m_parameters.followFileSymlinks, m_parameters.oneFileSystem, m_parameters.neverTaken, m_parameters.skipSymlinks})
{
    m_runName = QUuid::createUuid().toString(QUuid::WithoutBraces);
    m_block.resize(size_t(ReadSize));
    m_packing.setMaxThreadCount(1);
}

ArchiveBackupJob::~ArchiveBackupJob()
{
    m_pending.waitForFinished();
}

bool ArchiveBackupJob::settle()
{
    if (m_pending.isCanceled() || !m_pending.isStarted())
        return m_storageError.isEmpty();
    m_pending.waitForFinished();
    const StorageStatus status = m_pending.result();
    m_pending = QFuture<StorageStatus>();
    if (!status.ok()) {
        failStorage(status.error);
        return false;
    }
    return m_storageError.isEmpty();
}

bool ArchiveBackupJob::prepare()
{
    m_driver = m_parameters.driver;
    if (!m_driver) {
        m_ownDriver = std::make_unique<FileSystemDriver>(m_parameters.storageRoot);
        m_driver = m_ownDriver.get();
    }
    m_repository = std::make_unique<Repository>(m_driver, m_parameters.repositoryRoot);
    const QString transformName = m_parameters.compress ? ZstdTransform().name() : IdentityTransform().name();
    QString error;
    if (!m_parameters.newGeneration) {
        // A generation whose record is gone from the storage (removed, or a
        // storage started afresh) is begun again under its id: its old points
        // cannot restore anyway, and refusing would block every later run.
        const StorageStat record = m_driver->stat(m_repository->generationKey(m_parameters.generation));
        if (record.ok() && !record.exists) {
            m_parameters.newGeneration = true;
            m_parameters.previousSequence = 0;
        }
    }
    if (m_parameters.newGeneration) {
        std::shared_ptr<const ObjectKey> key;
        if (!m_parameters.password.isEmpty()) {
            key = GenerationKey::create(m_parameters.password, m_parameters.keyBytes);
            if (!key)
                error = QStringLiteral("the encryption key cannot be made");
        }
        if (error.isEmpty())
            error = m_repository->startGeneration(m_parameters.generation, transformName, key.get()).error;
    }
    if (error.isEmpty()) {
        OpenedGeneration opened = m_repository->openGeneration(m_parameters.generation, m_parameters.password);
        error = opened.error;
        m_transform = std::move(opened.transform);
        m_identifier = opened.identifier;
        m_chunker = Chunker(opened.chunkerSeed);
    }
    if (error.isEmpty() && !m_parameters.newGeneration) {
        // A crashed or stopped run's packs go first; a lost index comes back.
        if (!m_parameters.storeFile.isEmpty() && syncCache()) {
            const QSet<QString> named = m_cache->packs(m_parameters.generation);
            const Repository::Tidy tidy
                = m_repository->tidy(m_parameters.generation, *m_transform, m_identifier, &named);
            m_result.removedPacks = tidy.removed;
            error = tidy.error;
            if (error.isEmpty() && !tidy.adopted.isEmpty() && !syncCache())
                error = QStringLiteral("the rebuilt index cannot be cached");
        } else {
            const Repository::Tidy tidy = m_repository->tidy(m_parameters.generation, *m_transform, m_identifier);
            m_result.removedPacks = tidy.removed;
            ChunkIndex index;
            error = tidy.error.isEmpty() ? m_repository->loadIndex(m_parameters.generation, *m_transform, &index)
                                         : tidy.error;
            m_known.reserve(index.size());
            for (auto it = index.cbegin(); it != index.cend(); ++it)
                m_known.insert(it.key());
        }
    }
    // Without a previous tree nothing carries over in the store either: a
    // generation begun again under its id may still have rows there.
    m_result.replacesAll = m_parameters.newGeneration || m_parameters.previousSequence <= 0;
    if (error.isEmpty() && !m_parameters.newGeneration && m_parameters.previousSequence > 0) {
        // Without the previous tree every file is read again: slow, but it
        // stores nothing twice.
        QString treeError;
        const PointTree previous
            = m_repository->readTree(m_parameters.generation, m_parameters.previousSequence, *m_transform, &treeError);
        if (!treeError.isEmpty())
            m_result.replacesAll = true;
        m_previous.reserve(previous.entries.size());
        for (const TreeEntry& entry : previous.entries)
            m_previous.insert(entry.item.path, entry);
    }
    if (!error.isEmpty()) {
        m_result.planResult = PlanResult::Failed;
        m_result.message
            = QStringLiteral("The repository on %1 cannot be used: %2").arg(m_driver->description(), error);
        return false;
    }
    m_writer
        = std::make_unique<PackWriter>(m_driver, m_transform.get(), m_repository->packFolder(m_parameters.generation),
            m_parameters.packSize > 0 ? m_parameters.packSize : PackWriter::DefaultTargetSize);
    m_tree.generation = m_parameters.generation;
    m_tree.sequence = m_parameters.sequence;
    m_tree.startUtc = m_parameters.startUtc;
    m_tree.planName = m_parameters.planName;
    return true;
}

bool ArchiveBackupJob::syncCache()
{
    // Half a cache would let chunks be stored twice or, worse, be taken as
    // stored: on any failure the run goes on without one.
    const auto drop = [this] {
        m_cache.reset();
        m_database.reset();
        return false;
    };
    if (!m_cache) {
        m_database = std::make_unique<StoreDatabase>();
        if (!m_database->open(m_parameters.storeFile))
            return drop();
        m_cache = std::make_unique<ChunkIndexStore>(*m_database);
    }
    const QUuid& generation = m_parameters.generation;
    QString error;
    const QStringList keys = m_repository->indexKeys(generation, &error);
    if (!error.isEmpty())
        return drop();
    QSet<QString> cached = m_cache->objects(generation);
    const QSet<QString> stored(keys.cbegin(), keys.cend());
    if (!stored.contains(cached)) {
        // An index object the cache knows is gone from the storage: the
        // cache no longer describes it and is read again from scratch.
        if (!m_cache->forget(generation))
            return drop();
        cached.clear();
    }
    for (const QString& key : keys) {
        if (cached.contains(key))
            continue;
        QVector<PackSummary> packs;
        if (!m_repository->readIndexObject(key, *m_transform, &packs).isEmpty()
            || !m_cache->add(generation, key, packs)) {
            m_cache->forget(generation);
            return drop();
        }
    }
    return true;
}

bool ArchiveBackupJob::isKnown(const QByteArray& id)
{
    return m_known.contains(id) || (m_cache && m_cache->contains(m_parameters.generation, id));
}

ArchiveBackupJob::Result ArchiveBackupJob::run(const std::atomic_bool& stop, const ProgressHandler& progress)
{
    m_progress = progress;
    m_clock.start();
    if (!prepare())
        return std::move(m_result);

    m_scan = std::make_unique<TransferScan>(m_selection,
        SourceWalk::Options {m_parameters.followFileSymlinks, m_parameters.oneFileSystem, m_parameters.neverTaken, m_parameters.skipSymlinks});
    m_scan->start(stop);
    m_result.totals.transferStartMs = m_clock.elapsed();
    report(true);

    m_stop = &stop;
    m_walk.walk(*this);
    finish(stop);
    report(true);
    return std::move(m_result);
}

bool ArchiveBackupJob::stopped() const
{
    return *m_stop || m_stopped;
}

void ArchiveBackupJob::failed(const QString& path, const QString& message)
{
    fail(path, message);
}

void ArchiveBackupJob::file(const QString& path, const struct stat& info, bool followedLink)
{
    takeFile(path, info, followedLink, *m_stop);
}

void ArchiveBackupJob::link(const QString& path, const struct stat& info, const QString& target)
{
    takeItem(path, StoredContent::Link, info, target);
}

void ArchiveBackupJob::enterFolder(const QString& path, const struct stat& info, bool isRoot)
{
    Q_UNUSED(isRoot)
    takeItem(path, StoredContent::Folder, info);
}

void ArchiveBackupJob::leaveFolder(const QString& path, const struct stat& info, bool isRoot)
{
    Q_UNUSED(info)
    // A folder with nothing taken below it is kept only when asked to; a
    // root always.
    if (!isRoot && !m_parameters.backupEmptyFolders && m_tree.entries.constLast().item.path == path)
        m_tree.entries.removeLast();
}

void ArchiveBackupJob::takeItem(const QString& path, int type, const struct stat& info, const QString& linkTarget)
{
    TreeEntry entry;
    entry.item.path = path;
    entry.item.type = type;
    entry.item.linkTarget = linkTarget;
    describe(info, &entry.item);
    m_tree.entries.append(entry);
}

void ArchiveBackupJob::takeFile(
    const QString& path, const struct stat& seen, bool followLink, const std::atomic_bool& stop)
{
    RunProgress& totals = m_result.totals;
    ++totals.scannedCount;
    totals.scannedSize += seen.st_size;
    totals.currentFile = path;

    TreeEntry entry;
    entry.item.path = path;
    entry.item.type = StoredContent::File;
    describe(seen, &entry.item);

    const auto previous = m_previous.constFind(path);
    const bool forced
        = m_parameters.reBackupModifiedSince.isValid() && entry.item.modifiedUtc >= m_parameters.reBackupModifiedSince;
    if (!forced && previous != m_previous.cend() && previous->item.type == StoredContent::File) {
        const StoredContent& before = previous->item;
        // Kept only while every chunk is still in the generation's index.
        if (before.size == entry.item.size && before.modifiedNs == entry.item.modifiedNs
            && before.changedNs == entry.item.changedNs && before.inode == entry.item.inode
            && std::all_of(previous->chunks.cbegin(), previous->chunks.cend(),
                [this](const QByteArray& id) { return isKnown(id); })) {
            entry.chunks = previous->chunks;
            entry.item.checksum = before.checksum;
            m_tree.entries.append(entry);
            report(false);
            return;
        }
    }

    const qint64 started = m_clock.elapsed();
    const QByteArray encoded = NVL::ByteName::encode(path);
    bool unsteady = false;
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
        entry.chunks.clear();
        QString error;
        const bool read = chunkFile(fd, &entry, stop, &error);
        struct stat after
        {
        };
        const bool steady = ::fstat(fd, &after) == 0 && sameFile(before, after);
        ::close(fd);
        if (!read) {
            if (!m_storageError.isEmpty())
                fail(path, m_storageError, true);
            else if (!m_stopped && !stop)
                fail(path, error, true);
            return;
        }
        describe(before, &entry.item);
        unsteady = !steady;
        // The first read of a file that changes under it is done again; the
        // second is kept, with a warning that names it.
        if (steady)
            break;
    }
    ++totals.copiedCount;
    totals.copiedSize += entry.item.size;
    m_tree.entries.append(entry);

    RunFileRecord record;
    record.planId = m_parameters.planId;
    record.planName = m_parameters.planName;
    record.file = path;
    record.operation = RunFileRecord::Copied;
    record.size = entry.item.size;
    record.modifiedUtc = entry.item.modifiedUtc;
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

bool ArchiveBackupJob::chunkFile(int fd, TreeEntry* entry, const std::atomic_bool& stop, QString* error)
{
    Sha256Stream checksum;
    m_buffer.clear();
    m_chunker.finish(); // whatever a file abandoned midway left
    qint64 size = 0;
    for (;;) {
        if (stop) {
            m_stopped = true;
            return false;
        }
        const ssize_t got = ::read(fd, m_block.data(), size_t(ReadSize));
        if (got < 0) {
            if (errno == EINTR)
                continue;
            *error = QStringLiteral("Cannot read %1: %2")
                         .arg(entry->item.path, QString::fromLocal8Bit(std::strerror(errno)));
            return false;
        }
        const int offset = m_buffer.size();
        m_buffer.append(m_block.data(), int(got));
        checksum.add(m_buffer.constData() + offset, got);
        size += got;
        m_result.bytesRead += got;
        qint64 consumed = 0;
        if (got > 0) {
            for (qint64 length : m_chunker.push(m_buffer.constData() + offset, got)) {
                if (!storeChunk(m_buffer.constData() + consumed, length, entry))
                    return false;
                consumed += length;
            }
        } else {
            const qint64 last = m_chunker.finish();
            if (last > 0 && !storeChunk(m_buffer.constData(), last, entry))
                return false;
            break;
        }
        m_buffer.remove(0, int(consumed));
    }
    entry->item.size = size;
    entry->item.checksum = checksum.result();
    return true;
}

bool ArchiveBackupJob::storeChunk(const char* data, qint64 size, TreeEntry* entry)
{
    const QByteArray id = m_identifier.id(data, size);
    entry->chunks.append(id);
    if (isKnown(id))
        return true;
    if (!settle())
        return false;
    m_pending = QtConcurrent::run(
        &m_packing, [this, id, raw = QByteArray(data, int(size))] { return m_writer->add(id, raw); });
    m_known.insert(id);
    m_result.bytesNew += size;
    return true;
}

bool ArchiveBackupJob::finish(const std::atomic_bool& stop)
{
    settle();
    RunProgress& totals = m_result.totals;
    totals.scanning = false;
    // The count is of no use once the walk has ended.
    if (m_scan)
        m_scan->fill(&totals, true);
    m_scan.reset();
    totals.currentFile.clear();
    m_result.planResult
        = RunVerdict::judge(totals, m_storageError, stop || m_stopped, m_result.unsteadyCount, &m_result.message);

    const bool keeps = m_result.planResult == PlanResult::Success || m_result.planResult == PlanResult::Warning;
    if (keeps) {
        // Packs, then the index naming them, then the tree: every write is
        // durable when it returns, so the tree never names a chunk that is
        // not whole on the storage, and the store records the point last.
        StorageStatus status = m_writer->flush();
        const QVector<PackSummary> packs = m_writer->takeWrittenPacks();
        for (const PackSummary& pack : packs)
            m_result.bytesStored += pack.size;
        if (status.ok())
            status = m_repository->writeIndex(
                m_parameters.generation, m_parameters.sequence, m_runName, packs, *m_transform);
        if (status.ok() && m_cache
            && !m_cache->add(m_parameters.generation,
                m_repository->indexKey(m_parameters.generation, m_parameters.sequence, m_runName), packs))
            m_cache->forget(m_parameters.generation); // the next run reads the storage's index again
        if (status.ok())
            status = m_repository->writeTree(m_tree, *m_transform);
        if (status.ok()) {
            const QString tree = m_repository->treeKey(m_parameters.generation, m_parameters.sequence);
            const StorageStat written = m_driver->stat(tree);
            m_result.bytesStored += written.size;
            TreeChanges::between(&m_previous, m_tree.entries, tree, &m_result.content, &m_result.removed);
            return true;
        }
        m_result.planResult = PlanResult::Failed;
        m_result.message = QStringLiteral("The storage cannot be written, the run was abandoned: %1").arg(status.error);
        m_writer->takeWrittenPacks();
        for (const PackSummary& pack : packs)
            m_driver->remove(pack.key);
        return false;
    }
    // Nothing will refer to this run's packs; whatever a failed removal
    // leaves, the next run's tidy finds.
    for (const PackSummary& pack : m_writer->takeWrittenPacks())
        m_driver->remove(pack.key);
    m_result.bytesStored = 0;
    return false;
}

void ArchiveBackupJob::fail(const QString& path, const QString& message, bool counted)
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

void ArchiveBackupJob::failStorage(const QString& message)
{
    // A storage that cannot take one pack will not take the next.
    m_storageError = QStringLiteral("The storage cannot be written, the run was abandoned: %1").arg(message);
    m_stopped = true;
}

void ArchiveBackupJob::report(bool force)
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
