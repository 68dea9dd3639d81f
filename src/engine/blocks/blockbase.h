#pragma once

#include <functional>
#include <optional>

#include "blockmap.h"

namespace NVB::Engine {

class FolderHandle;
struct StoredContent;

// Finds the full version a changed file is compared with.
class BlockBase
{
public:
    using MapLookup = std::function<std::optional<BlockMap>(const QString& object)>;

    // `previous` is the file in the previous restore point: a full version
    // with a map, or an increment, whose own full version is the base. None
    // when the map is missing, made with another block size or under
    // another encipherment, or the full version left the storage: the file
    // is then stored whole.
    static std::optional<BlockMap> of(const StoredContent& previous, const FolderHandle& storage, quint32 blockSize,
        bool enciphered, const MapLookup& lookup);

    // The block size a plan asks for, kept within what makes sense.
    static quint32 blockSizeOf(unsigned long long requested);
};

} // namespace NVB::Engine
