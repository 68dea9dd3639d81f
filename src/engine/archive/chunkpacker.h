#pragma once

#include <atomic>
#include <memory>
#include <vector>

#include <QByteArray>
#include <QFuture>
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
// (with their syncs) run on a thread of their own, one chunk at a time,
// while the next chunk is read and hashed; a pool of its own, since the
// shared one runs the plans themselves.
class ChunkPacker
{
public:
    enum class Outcome { Done, Stopped, ReadFailed, StorageFailed };

    ChunkPacker(ArchiveSession* session, const QString& packFolder, qint64 packSize);
    ~ChunkPacker();

    // Fills the entry's chunk list, size and checksum from `fd`; `error`
    // says why a read or the storage failed.
    Outcome chunkFile(int fd, TreeEntry* entry, const std::atomic_bool& stop, QString* error);
    // Waits for the chunk in flight; false with `error` when the storage
    // refused it.
    bool settle(QString* error);
    // The last chunks and the pending pack to the storage.
    StorageStatus flush();
    QVector<PackSummary> takeWrittenPacks();

    qint64 bytesRead() const { return m_bytesRead; }
    qint64 bytesNew() const { return m_bytesNew; }

private:
    bool storeChunk(const char* data, qint64 size, TreeEntry* entry, QString* error);

    ArchiveSession* m_session;
    std::unique_ptr<PackWriter> m_writer;
    QThreadPool m_packing;
    QFuture<StorageStatus> m_pending;
    Chunker m_chunker;
    std::vector<char> m_block; // one read
    QByteArray m_buffer; // the unfinished chunk and the last read
    qint64 m_bytesRead = 0;
    qint64 m_bytesNew = 0;
};

} // namespace NVB::Engine
