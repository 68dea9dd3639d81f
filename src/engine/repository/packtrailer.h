#pragma once

#include "repository/packresult.h"

namespace NVB::Engine {

// The self-description at the end of every pack, so that a lost or damaged
// index can be rebuilt from the packs alone. A pack is
//
//   chunk 0 | chunk 1 | ... | trailer | footer
//
// Chunks are stored as the chunk transform encoded them. The trailer, before
// the transform encodes it too (so an enciphered repository hides even chunk
// lengths), is
//
//   u32 entry count | entries | SHA-256 of everything before it
//
// with each entry 48 bytes: the 32-byte chunk id, u64 offset, u32 stored
// length, u32 raw length. The footer is 16 bytes: u32 length of the encoded
// trailer, u32 format version, the magic "NVBPACK1". All integers are little
// endian. A reader needs one ranged read of the footer and one of the
// trailer, then one per chunk.
class PackTrailer
{
public:
    static constexpr int FooterSize = 16;
    static constexpr int EntrySize = 48;
    static constexpr quint32 Version = 1;
    // Chunks are at most a few MiB; anything beyond this is damage.
    static constexpr qint64 MaximumChunkLength = 64 * 1024 * 1024;

    static QByteArray serialize(const QVector<PackEntry>& entries);
    // Why `plain` is not a valid trailer for a pack body of `bodySize` bytes,
    // or an empty string with `entries` filled.
    static QString parse(const QByteArray& plain, qint64 bodySize, QVector<PackEntry>* entries);

    static QByteArray footer(quint32 trailerLength);
    static QString parseFooter(const QByteArray& footer, quint32* trailerLength);
};

} // namespace NVB::Engine
