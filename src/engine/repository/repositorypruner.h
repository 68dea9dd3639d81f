#pragma once

#include <QStringList>
#include <QUuid>

namespace NVB::Engine {

class ChunkIdentifier;
class ChunkTransform;
class Repository;

// Frees the chunks of one generation that no remaining point's tree names,
// after retention removed or trimmed trees. A pack with nothing named goes
// whole; a pack mostly garbage has its named chunks copied into new packs
// first. The order keeps every step safe to cut short: new packs, then an
// index object naming them, then each index object that names an old pack
// replaced by one that does not (written before the old is removed), and only
// then the old packs, which no index names any more and which the next run's
// tidying would remove anyway. A point's chunks are therefore always named by
// some index and whole on the storage.
class RepositoryPruner
{
public:
    struct Result
    {
        QString error;
        QStringList removedPacks;
        QStringList repackedPacks; // among removedPacks: whose named chunks moved
        qint64 freedBytes = 0;
    };

    // A pack whose unnamed bytes exceed this share of its chunks is repacked.
    static constexpr double RepackShare = 0.5;

    static Result prune(Repository& repository, const QUuid& generation, const ChunkTransform& transform,
        const ChunkIdentifier& identifier, qint64 packSize = 0);
};

} // namespace NVB::Engine
