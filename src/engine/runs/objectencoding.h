#pragma once

namespace NVB::Engine {

// How a file's data is kept in its storage object. The value is stored with
// each restore point's content, so objects of either kind can sit side by
// side in one point (a plan whose compression was switched on keeps reusing
// its unchanged plain copies).
enum class ObjectEncoding : int {
    Plain = 0,
    Zstd = 1, // one zstd frame holding the whole file
    // Either of the above, then enciphered in authenticated chunks with a key
    // from the plan's password (see ObjectSealer).
    Enciphered = 2,
    ZstdEnciphered = 3,
    // Added to any of the above: the object holds only the blocks that
    // differ from the file's full version (blocks/IncrementHeader), which a
    // reader needs beside it.
    Increment = 4,
};

inline bool isCompressed(ObjectEncoding encoding)
{
    return (int(encoding) & int(ObjectEncoding::Zstd)) != 0;
}

inline bool isEnciphered(ObjectEncoding encoding)
{
    return (int(encoding) & int(ObjectEncoding::Enciphered)) != 0;
}

inline bool isIncrement(int encoding)
{
    return (encoding & int(ObjectEncoding::Increment)) != 0;
}

} // namespace NVB::Engine
