#pragma once

#include <optional>

#include <QList>
#include <QStringList>

#include "blockmap.h"

namespace NVB::Engine {

class StoreDatabase;

// `block_maps`: the block hashes of every full version a block-level plan
// stored, by the version's object. A map that is lost only costs the next
// change of its file a full version; one that outlives its object is never
// used for another, since its checksum must match the version's.
class BlockStore
{
public:
    explicit BlockStore(StoreDatabase& database);

    std::optional<BlockMap> map(const QString& object);
    bool save(const QList<BlockMap>& maps);
    // The maps of objects that left the storage.
    bool forget(const QStringList& objects);

private:
    StoreDatabase& m_db;
};

} // namespace NVB::Engine
