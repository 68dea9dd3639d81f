#pragma once

#include <atomic>
#include <deque>
#include <future>
#include <memory>
#include <utility>
#include <vector>

#include <QByteArray>
#include <QString>
#include <QThreadPool>
#include <QVector>

#include "chunking/chunker.h"
#include "repository/packresult.h"
#include "repository/pointtree.h"
#include "storage/storageresult.h"

namespace NVB::Engine {

class ArchiveSession;
class PackWriter;

// Reads a file, cuts it into chunks, names each one and hands those its
// generation does not hold yet to the pack writer. Encoding and pack writes
// (with their syncs) run on a thread of their own, in the order the chunks
// came, while later chunks are read and hashed; a pool of its own, since the
// shared one runs the plans themselves. Up to QueueBytes of new chunks wait
// for that thread, so reading and hashing go on through a pack's write and
// sync. A packer holds at most the queue (16 MiB), the read buffers (one
// unfinished chunk and two reads, 6 MiB) and the pack being filled (8 MiB
// plus one encoded chunk): under 40 MiB.
class ChunkPacker
{
public:
    enum class Outcome { Done, Stopped, ReadFailed, StorageFailed };

    ChunkPacker(ArchiveSession* session, const QString& packFolder, qint64 packSize);
    ~ChunkPacker();

    // Fills the entry's chunk list, size and checksum from `fd`; `error`
    // says why a read or the storage failed.
    Outcome chunkFile(int fd, TreeEntry* entry, const std::atomic_bool& stop, QString* error);
    // Raw bytes of new chunks allowed to wait for the packing thread.
    static constexpr qint64 QueueBytes = 16 * 1024 * 1024;

    // Waits for the chunks in flight; false with `error` when the storage
    // refused it.
    bool settle(QString* error);
    // The last chunks and the pending pack to the storage.
    StorageStatus flush();
    QVector<PackSummary> takeWrittenPacks();

    qint64 bytesRead() const { return m_bytesRead; }
    qint64 bytesNew() const { return m_bytesNew; }

private:
    bool storeChunk(const char* data, qint64 size, TreeEntry* entry, QString* error);
    // Waits for the oldest chunk in flight.
    bool settleOldest(QString* error);

    ArchiveSession* m_session;
    std::unique_ptr<PackWriter> m_writer;
    QThreadPool m_packing;
    // Chunks handed to the packing thread, oldest first, with their sizes.
    std::deque<std::pair<std::future<StorageStatus>, qint64>> m_pending;
    qint64 m_pendingBytes = 0;
    // Set by the packing thread at the first refusal, so the chunks queued
    // behind it are dropped instead of stored.
    std::atomic_bool m_refused {false};
    // The first refusal settled, so nothing more is queued or stored.
    QString m_refusal;
    Chunker m_chunker;
    std::vector<char> m_block; // one read
    QByteArray m_buffer; // the unfinished chunk and the last read
    qint64 m_bytesRead = 0;
    qint64 m_bytesNew = 0;
};

} // namespace NVB::Engine
