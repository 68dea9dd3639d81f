#pragma once

#include "repository/packresult.h"
#include "storage/storageresult.h"

namespace NVB::Engine {

class ChunkTransform;
class StorageDriver;

// Gathers transformed chunks into packs and stores each pack whole once it
// reaches the target size. 8 MiB keeps the object count of a repository low
// (2,000 small files become one or two objects, not 2,000 requests) while a
// restore that needs one chunk reads only that chunk's range, and a failed
// upload repeats at most 8 MiB plus one chunk.
//
// A pack is named by the SHA-256 of its stored bytes, below a two-hex-digit
// fan-out folder ("<folder>/3f/3f2a..."), so a verify can check a pack against
// its name and no folder grows past a few thousand entries. Not thread-safe:
// one writer per worker.
class PackWriter
{
public:
    static constexpr qint64 DefaultTargetSize = 8 * 1024 * 1024;

    PackWriter(StorageDriver* driver, const ChunkTransform* transform, const QString& folder,
        qint64 targetSize = DefaultTargetSize);

    // Encodes a chunk (whose id the caller has computed from its raw bytes)
    // and stores the pending pack when it has grown to the target size.
    StorageStatus add(const QByteArray& id, const QByteArray& raw);
    // Stores the pending pack, if any. After a failure the pending chunks stay,
    // so the caller may call flush() again.
    StorageStatus flush();

    qint64 pendingSize() const { return m_body.size(); }
    int pendingChunks() const { return m_entries.size(); }
    // The packs stored since the last call, for the index.
    QVector<PackSummary> takeWrittenPacks();

private:
    StorageDriver* m_driver;
    const ChunkTransform* m_transform;
    QString m_folder;
    qint64 m_targetSize;
    QByteArray m_body;
    QVector<PackEntry> m_entries;
    QVector<PackSummary> m_written;
};

} // namespace NVB::Engine
