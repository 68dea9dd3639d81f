#pragma once

#include "repository/chunktransform.h"

namespace NVB::Engine {

// Compresses chunks with zstd at level 3, the level the legacy format's
// objects use: several times faster than gzip at a similar ratio, so the
// compression never becomes what a run waits for. A chunk that would grow is
// still stored compressed; zstd's own framing bounds that growth to a few
// bytes, which is cheaper than a flag per chunk.
class ZstdTransform : public ChunkTransform
{
public:
    static constexpr int Level = 3;

    QString name() const override;
    TransformResult encode(const QByteArray& raw) const override;
    TransformResult decode(const QByteArray& stored) const override;
};

} // namespace NVB::Engine
