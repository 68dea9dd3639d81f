#include "chunkpacker.h"

#include <cerrno>
#include <cstring>
#include <unistd.h>

#include <QtConcurrent>

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
    m_block.resize(size_t(ReadSize));
    m_packing.setMaxThreadCount(1);
}

ChunkPacker::~ChunkPacker()
{
    m_pending.waitForFinished();
}

bool ChunkPacker::settle(QString* error)
{
    if (m_pending.isCanceled() || !m_pending.isStarted())
        return true;
    m_pending.waitForFinished();
    const StorageStatus status = m_pending.result();
    m_pending = QFuture<StorageStatus>();
    if (!status.ok())
        *error = status.error;
    return status.ok();
}

StorageStatus ChunkPacker::flush()
{
    QString error;
    if (!settle(&error))
        return {error};
    return m_writer->flush();
}

QVector<PackSummary> ChunkPacker::takeWrittenPacks()
{
    return m_writer->takeWrittenPacks();
}

ChunkPacker::Outcome ChunkPacker::chunkFile(int fd, TreeEntry* entry, const std::atomic_bool& stop, QString* error)
{
    Sha256Stream checksum;
    m_buffer.clear();
    m_chunker.finish(); // whatever a file abandoned midway left
    qint64 size = 0;
    for (;;) {
        if (stop)
            return Outcome::Stopped;
        const ssize_t got = ::read(fd, m_block.data(), size_t(ReadSize));
        if (got < 0) {
            if (errno == EINTR)
                continue;
            *error = QStringLiteral("Cannot read %1: %2")
                         .arg(entry->item.path, QString::fromLocal8Bit(std::strerror(errno)));
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
    if (!settle(error))
        return false;
    m_pending = QtConcurrent::run(
        &m_packing, [this, id, raw = QByteArray(data, int(size))] { return m_writer->add(id, raw); });
    m_session->remember(id);
    m_bytesNew += size;
    return true;
}

} // namespace NVB::Engine
