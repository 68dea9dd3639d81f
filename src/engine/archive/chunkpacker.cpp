#include "chunkpacker.h"

#include <cerrno>
#include <cstring>
#include <future>
#include <memory>
#include <unistd.h>

#include "archivesession.h"
#include "chunking/sha256stream.h"
#include "repository/packwriter.h"

namespace NVB::Engine {

namespace {

// Large enough that a read costs little, small enough that a stop is seen
// within a fraction of a second even on a slow disk.
constexpr qint64 ReadSize = 1024 * 1024;

} // namespace

ChunkPacker::ChunkPacker(ArchiveSession* session, const QString& packFolder, qint64 packSize)
    : m_session(session)
    , m_writer(std::make_unique<PackWriter>(session->driver(), session->transform(), packFolder, packSize))
    , m_chunker(session->chunkerSeed())
{
    // An unfinished chunk and one read at most; reserved, so the buffer
    // keeps its room from file to file.
    m_buffer.reserve(int(Chunker::MaximumSize + ReadSize));
    m_block.resize(size_t(ReadSize));
    m_packing.setMaxThreadCount(1);
}

ChunkPacker::~ChunkPacker()
{
    for (auto& pending : m_pending)
        pending.first.wait();
}

bool ChunkPacker::settleOldest(QString* error)
{
    std::future<StorageStatus> oldest = std::move(m_pending.front().first);
    m_pendingBytes -= m_pending.front().second;
    m_pending.pop_front();
    const StorageStatus status = oldest.get();
    if (status.ok())
        return true;
    if (m_refusal.isEmpty())
        m_refusal = status.error;
    if (error->isEmpty())
        *error = status.error;
    return false;
}

bool ChunkPacker::settle(QString* error)
{
    bool ok = true;
    while (!m_pending.empty())
        ok = settleOldest(error) && ok;
    return ok;
}

StorageStatus ChunkPacker::flush()
{
    QString error;
    if (!settle(&error))
        return {error};
    if (!m_refusal.isEmpty())
        return {m_refusal};
    return m_writer->flush();
}

QVector<PackSummary> ChunkPacker::takeWrittenPacks()
{
    // The writer is the packing thread's until every chunk has settled; a
    // refusal was reported by settle() already.
    QString ignored;
    settle(&ignored);
    return m_writer->takeWrittenPacks();
}

ChunkPacker::Outcome ChunkPacker::chunkFile(int fd, TreeEntry* entry, const std::atomic_bool& stop, QString* error)
{
    Sha256Stream checksum;
    m_buffer.resize(0);
    m_chunker.finish(); // whatever a file abandoned midway left
    qint64 size = 0;
    for (;;) {
        if (stop)
            return Outcome::Stopped;
        const ssize_t got = ::read(fd, m_block.data(), size_t(ReadSize));
        const int failure = errno;
        if (got < 0) {
            if (failure == EINTR)
                continue;
            *error = QStringLiteral("Cannot read %1: %2")
                         .arg(entry->item.path, QString::fromLocal8Bit(std::strerror(failure)));
            return Outcome::ReadFailed;
        }
        const int offset = m_buffer.size();
        m_buffer.append(m_block.data(), int(got));
        checksum.add(m_buffer.constData() + offset, got);
        size += got;
        m_bytesRead += got;
        qint64 consumed = 0;
        if (got > 0) {
            for (qint64 length : m_chunker.push(m_buffer.constData() + offset, got)) {
                if (!storeChunk(m_buffer.constData() + consumed, length, entry, error))
                    return Outcome::StorageFailed;
                consumed += length;
            }
        } else {
            const qint64 last = m_chunker.finish();
            if (last > 0 && !storeChunk(m_buffer.constData(), last, entry, error))
                return Outcome::StorageFailed;
            break;
        }
        m_buffer.remove(0, int(consumed));
    }
    entry->item.size = size;
    entry->item.checksum = checksum.result();
    return Outcome::Done;
}

bool ChunkPacker::storeChunk(const char* data, qint64 size, TreeEntry* entry, QString* error)
{
    const QByteArray id = m_session->identifier().id(data, size);
    entry->chunks.append(id);
    if (m_session->isKnown(id))
        return true;
    if (!m_refusal.isEmpty()) {
        *error = m_refusal;
        return false;
    }
    while (!m_pending.empty() && m_pendingBytes + size > QueueBytes) {
        if (!settleOldest(error)) {
            QString rest;
            settle(&rest);
            return false;
        }
    }
    // A promise rather than a QFuture: waiting on a QFuture whose task has
    // not started runs that task in the waiting thread, beside the packing
    // thread, and the writer is not thread-safe.
    auto promise = std::make_shared<std::promise<StorageStatus>>();
    std::future<StorageStatus> added = promise->get_future();
    m_packing.start([this, promise, id, raw = QByteArray(data, int(size))] {
        // Behind a refused chunk the run has failed already: storing more
        // would only leave more for the tidy to remove.
        StorageStatus status;
        if (!m_refused) {
            status = m_writer->add(id, raw);
            if (!status.ok())
                m_refused = true;
        }
        promise->set_value(status);
    });
    m_pending.emplace_back(std::move(added), size);
    m_pendingBytes += size;
    m_session->remember(id);
    m_bytesNew += size;
    return true;
}

} // namespace NVB::Engine
