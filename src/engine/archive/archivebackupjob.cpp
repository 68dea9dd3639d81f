#include "archivebackupjob.h"

#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <utility>

#include <QDir>

#include "archivesession.h"
#include "chunkpacker.h"
#include "core/bytename.h"
#include "core/nvldebug.h"
#include "progress/transferscan.h"
#include "records/plan/planresult.h"
#include "repository/packwriter.h"
#include "repository/pointtreereader.h"
#include "repository/pointtreewriter.h"
#include "repository/repository.h"
#include "runs/runverdict.h"
#include "storage/storagedriver.h"
#include "treemerge.h"
#include "walk/filestamp.h"

namespace NVB::Engine {

using FileStamp::nanoseconds;
using FileStamp::sameFile;

using NVB::Info::Plan::PlanResult;

namespace {

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
          SourceWalk::Options {m_parameters.followFileSymlinks, m_parameters.oneFileSystem, m_parameters.neverTaken,
              m_parameters.skipSymlinks})
{
    m_runName = QUuid::createUuid().toString(QUuid::WithoutBraces);
}

ArchiveBackupJob::~ArchiveBackupJob() = default;

bool ArchiveBackupJob::prepare()
{
    const Parameters& p = m_parameters;
    m_session = std::make_unique<ArchiveSession>(ArchiveSession::Setup {p.storageRoot, p.repositoryRoot, p.generation,
        p.newGeneration, p.compress, p.password, p.keyBytes, p.driver, p.storeFile});
    const QString error = m_session->open();
    if (m_session->newGeneration()) {
        m_parameters.newGeneration = true;
        m_parameters.previousSequence = 0;
    }
    m_result.removedPacks = m_session->removedPacks();
    if (!error.isEmpty()) {
        m_result.planResult = PlanResult::Failed;
        m_result.message
            = QStringLiteral("The repository on %1 cannot be used: %2").arg(m_session->driver()->description(), error);
        return false;
    }
    Repository* repository = m_session->repository();
    // Without a previous tree nothing carries over in the store either: a
    // generation begun again under its id may still have rows there.
    m_result.replacesAll = m_parameters.newGeneration || m_parameters.previousSequence <= 0;
    if (!m_result.replacesAll) {
        // Without the previous tree every file is read again: slow, but it
        // stores nothing twice.
        m_previous = std::make_unique<PointTreeReader>(repository, m_session->transform());
        const QString treeError = m_previous->open(m_parameters.generation, m_parameters.previousSequence);
        if (!treeError.isEmpty()) {
            NVL::NvlDebug(QStringLiteral("NVB")).warning() << treeError;
            m_previous.reset();
            m_result.replacesAll = true;
        }
    }
    m_packer = std::make_unique<ChunkPacker>(m_session.get(), repository->packFolder(m_parameters.generation),
        m_parameters.packSize > 0 ? m_parameters.packSize : PackWriter::DefaultTargetSize);
    PointTree header;
    header.generation = m_parameters.generation;
    header.sequence = m_parameters.sequence;
    header.startUtc = m_parameters.startUtc;
    header.planName = m_parameters.planName;
    m_tree = std::make_unique<PointTreeWriter>(repository, m_session->transform(), header);
    m_treeKey = repository->treeKey(m_parameters.generation, m_parameters.sequence);
    m_merge = std::make_unique<TreeMerge>(m_previous.get(), m_tree.get(), m_treeKey, m_parameters.stageContent);
    // An unchanged file is kept only while its chunks are in the index:
    // asking for a whole listing's chunks at once spares a look-up each.
    m_merge->setListingSeen([this](const QVector<TreeEntry>& listing) {
        QVector<QByteArray> ids;
        for (const TreeEntry& entry : listing) {
            if (entry.item.type == StoredContent::File)
                ids += entry.chunks;
        }
        m_session->prefetch(ids);
    });
    return true;
}

ArchiveBackupJob::Result ArchiveBackupJob::run(const std::atomic_bool& stop, const ProgressHandler& progress)
{
    m_pacer.start(progress);
    if (!prepare())
        return std::move(m_result);

    m_scan = std::make_unique<TransferScan>(m_selection,
        SourceWalk::Options {m_parameters.followFileSymlinks, m_parameters.oneFileSystem, m_parameters.neverTaken,
            m_parameters.skipSymlinks});
    m_scan->start(stop, m_parameters.expectedTotals);
    m_result.totals.transferStartMs = m_pacer.elapsed();
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
    TreeEntry entry;
    entry.item.path = path;
    entry.item.type = StoredContent::Link;
    entry.item.linkTarget = target;
    describe(info, &entry.item);
    addEntry(entry);
}

void ArchiveBackupJob::enterFolder(const QString& path, const struct stat& info, bool isRoot)
{
    TreeEntry entry;
    entry.item.path = path;
    entry.item.type = StoredContent::Folder;
    describe(info, &entry.item);
    // A folder with nothing taken below it is kept only when asked to; a
    // root always.
    m_merge->enterFolder(entry, isRoot || m_parameters.backupEmptyFolders);
}

void ArchiveBackupJob::leaveFolder(const QString& path, const struct stat& info, bool isRoot)
{
    Q_UNUSED(info)
    Q_UNUSED(isRoot)
    m_merge->leaveFolder(path);
}

void ArchiveBackupJob::addEntry(const TreeEntry& entry)
{
    m_merge->add(entry);
    if (m_merge->writeFailed() && m_storageError.isEmpty())
        failStorage(m_merge->error());
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

    const TreeEntry* previous = m_merge->previous(path);
    const bool forced
        = m_parameters.reBackupModifiedSince.isValid() && entry.item.modifiedUtc >= m_parameters.reBackupModifiedSince;
    if (!forced && previous && previous->item.type == StoredContent::File) {
        const StoredContent& before = previous->item;
        // Kept only while every chunk is still in the generation's index.
        if (before.size == entry.item.size && before.modifiedNs == entry.item.modifiedNs
            && before.changedNs == entry.item.changedNs && before.inode == entry.item.inode
            && std::all_of(previous->chunks.cbegin(), previous->chunks.cend(),
                [this](const QByteArray& id) { return m_session->isKnown(id); })) {
            entry.chunks = previous->chunks;
            entry.item.checksum = before.checksum;
            addEntry(entry);
            report(false);
            return;
        }
    }

    const qint64 started = m_pacer.elapsed();
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
        const ChunkPacker::Outcome read = m_packer->chunkFile(fd, &entry, stop, &error);
        struct stat after
        {
        };
        const bool steady = ::fstat(fd, &after) == 0 && sameFile(before, after);
        ::close(fd);
        if (read == ChunkPacker::Outcome::Stopped)
            m_stopped = true;
        if (read == ChunkPacker::Outcome::StorageFailed)
            failStorage(error);
        if (read != ChunkPacker::Outcome::Done) {
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
    addEntry(entry);

    RunFileRecord record;
    record.planId = m_parameters.planId;
    record.planName = m_parameters.planName;
    record.file = path;
    record.operation = RunFileRecord::Copied;
    record.size = entry.item.size;
    record.modifiedUtc = entry.item.modifiedUtc;
    record.finishUtc = QDateTime::currentDateTimeUtc();
    record.durationMs = m_pacer.elapsed() - started;
    if (unsteady) {
        ++m_result.unsteadyCount;
        record.message = QStringLiteral("%1 changed while it was read; the copy may be inconsistent").arg(path);
        if (m_result.message.isEmpty())
            m_result.message = record.message;
    }
    m_result.files.append(record);
    report(false);
}

bool ArchiveBackupJob::finish(const std::atomic_bool& stop)
{
    QString error;
    if (!m_packer->settle(&error))
        failStorage(error);
    m_result.bytesRead = m_packer->bytesRead();
    m_result.bytesNew = m_packer->bytesNew();
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
    if (keeps && commit())
        return true;
    if (keeps) {
        m_result.planResult = PlanResult::Failed;
        m_result.message = m_storageError;
    }
    discard();
    return false;
}

bool ArchiveBackupJob::commit()
{
    // Packs, then the index naming them, then the tree: every write is
    // durable when it returns, so the tree never names a chunk that is not
    // whole on the storage, and the store records the point last.
    Repository* repository = m_session->repository();
    StorageStatus status = m_packer->flush();
    const QVector<PackSummary> packs = m_packer->takeWrittenPacks();
    m_written = packs;
    for (const PackSummary& pack : packs)
        m_result.bytesStored += pack.size;
    if (status.ok())
        status = repository->writeIndex(
            m_parameters.generation, m_parameters.sequence, m_runName, packs, *m_session->transform());
    if (status.ok())
        m_session->cacheIndex(repository->indexKey(m_parameters.generation, m_parameters.sequence, m_runName), packs);
    // The listing of the last folder, and the folders of the previous point
    // this one no longer holds, before the tree is closed.
    if (status.ok() && !m_merge->finish())
        status = {m_merge->error()};
    if (status.ok())
        status = m_tree->finish();
    if (!status.ok()) {
        m_storageError = QStringLiteral("The storage cannot be written, the run was abandoned: %1").arg(status.error);
        return false;
    }
    m_result.bytesStored += m_tree->bytesWritten();
    if (m_merge->previousLost()) {
        // Rows compared as unchanged before the previous tree failed went
        // unrecorded: the point is recorded whole, from the tree just made.
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << m_merge->error();
        PointTreeReader made(repository, m_session->transform());
        if (!made.open(m_parameters.generation, m_parameters.sequence).isEmpty() || !m_merge->recordAll(&made)) {
            m_storageError = QStringLiteral("The restore point's tree cannot be read back: %1").arg(m_treeKey);
            repository->removeTree(m_parameters.generation, m_parameters.sequence);
            return false;
        }
        m_result.replacesAll = true;
    }
    m_result.content = m_merge->takeAdded();
    m_result.removed = m_merge->takeRemoved();
    return true;
}

void ArchiveBackupJob::discard()
{
    // Nothing will refer to this run's packs and tree parts; whatever a
    // failed removal leaves, the next run's tidy finds.
    m_written += m_packer->takeWrittenPacks();
    for (const PackSummary& pack : std::as_const(m_written))
        m_session->driver()->remove(pack.key);
    m_written.clear();
    m_tree->abandon();
    m_result.bytesStored = 0;
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
    m_pacer.report(&m_result.totals, m_scan.get(), force);
}

} // namespace NVB::Engine
