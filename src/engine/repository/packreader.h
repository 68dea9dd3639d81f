#pragma once

#include <QStringList>

#include "repository/packresult.h"

namespace NVB::Engine {

class ChunkIdentifier;
class ChunkTransform;
class StorageDriver;

// Reads packs back by range: the trailer to rebuild an index, single chunks
// for a restore, the whole pack for a verify. Every chunk is checked against
// its id after decoding, and every message names the pack, so a damaged pack
// costs exactly the files whose chunks it holds. Thread-safe as long as the
// driver and the transform are.
class PackReader
{
public:
    PackReader(const StorageDriver* driver, const ChunkTransform* transform, const ChunkIdentifier* identifier);

    PackContents readTrailer(const QString& key) const;
    ChunkData readChunk(const QString& key, const PackEntry& entry) const;
    // Chunks of one pack, each after the one before, read with one request
    // from the first's start to the last's end; one answer per entry.
    QVector<ChunkData> readChunks(const QString& key, const QVector<PackEntry>& entries) const;
    // Everything wrong with a pack: its name against its content, its
    // trailer, each of its chunks. Empty when the pack is whole.
    QStringList verify(const QString& key) const;

private:
    QString parseTrailer(const QString& key, const QByteArray& tail, qint64 size, QVector<PackEntry>* entries) const;
    ChunkData decodeChunk(const QString& key, const PackEntry& entry, const QByteArray& stored) const;

    const StorageDriver* m_driver;
    const ChunkTransform* m_transform;
    const ChunkIdentifier* m_identifier;
};

} // namespace NVB::Engine
