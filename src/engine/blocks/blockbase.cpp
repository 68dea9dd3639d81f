#include "blockbase.h"

#include <unistd.h>

#include "incrementheader.h"
#include "runs/folderhandle.h"
#include "runs/objectencoding.h"
#include "store/storedcontent.h"

namespace NVB::Engine {

quint32 BlockBase::blockSizeOf(unsigned long long requested)
{
    // Smaller blocks find smaller changes but cost a hash each; below 4 KiB
    // (a page) the map outweighs the savings.
    if (requested == 0)
        return 1024 * 1024;
    return quint32(qBound<unsigned long long>(4096, requested, 64ull * 1024 * 1024));
}

std::optional<BlockMap> BlockBase::of(const StoredContent& previous, const FolderHandle& storage, quint32 blockSize,
    bool enciphered, const MapLookup& lookup)
{
    if (!lookup || previous.type != StoredContent::File || previous.object.isEmpty())
        return std::nullopt;
    std::optional<BlockMap> map;
    QString error;
    if (isIncrement(previous.encoding)) {
        const auto header = IncrementHeader::ofObject(storage, previous.object, &error);
        if (!header)
            return std::nullopt;
        map = lookup(header->baseObject);
    } else {
        map = lookup(previous.object);
        if (map && map->checksum != previous.checksum)
            return std::nullopt;
    }
    if (!map || map->blockSize != blockSize || isEnciphered(ObjectEncoding(map->encoding)) != enciphered)
        return std::nullopt;
    const int fd = IncrementHeader::openObject(storage, map->object, &error);
    if (fd < 0)
        return std::nullopt;
    ::close(fd);
    return map;
}

} // namespace NVB::Engine
