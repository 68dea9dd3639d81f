#pragma once

#include <QVector>
#include <QtGlobal>

#include <array>

namespace NVB::Engine {

// Content-defined chunking (FastCDC with a gear table and normalized chunking).
//
// Sizes for the new backup format: minimum 256 KiB, average 1 MiB, maximum
// 4 MiB. About 1 MiB keeps the index of a 1 TiB repository near a million
// entries (small enough to cache locally and to load per generation) while an
// edit still costs only a megabyte or two of new data; the 256 KiB minimum
// skips hashing of the first quarter of every chunk (the main speed gain of
// FastCDC) and keeps tiny chunks from bloating the index; the 4 MiB maximum
// bounds memory per chunk and the cost of a worst-case (unchunkable) input.
//
// Normalized chunking: below the normal point (the average) a cut needs 21
// high bits of the gear hash to be zero, from it on only 18, which pulls chunk
// sizes toward the average. With the minimum skipped that gives a mean of
// about 1.05 MiB on random data.
//
// The chunker is fed in reads of any size and reports the same boundaries
// whatever the sizes: all state is per byte.
class Chunker
{
public:
    static constexpr qint64 MinimumSize = 256 * 1024;
    static constexpr qint64 AverageSize = 1024 * 1024;
    static constexpr qint64 MaximumSize = 4 * 1024 * 1024;

    // A repository may give its own seed so that boundaries (and thus chunk
    // sizes) do not reveal which known file a chunk came from.
    explicit Chunker(quint64 seed = 0);
    Chunker(quint64 seed, qint64 minimumSize, qint64 averageSize, qint64 maximumSize);

    // Feeds the next bytes of the stream; returns the lengths of the chunks
    // that ended inside them, in order. Bytes of an unfinished chunk stay
    // counted until later pushes or finish().
    QVector<qint64> push(const char* data, qint64 size);
    // Ends the stream: the length of the last chunk, or 0 when nothing is left.
    qint64 finish();

    qint64 minimumSize() const { return m_minimum; }
    qint64 averageSize() const { return m_average; }
    qint64 maximumSize() const { return m_maximum; }

private:
    std::array<quint64, 256> m_gear {};
    qint64 m_minimum;
    qint64 m_average;
    qint64 m_maximum;
    quint64 m_strictMask;
    quint64 m_looseMask;
    quint64 m_hash = 0;
    qint64 m_length = 0;
};

} // namespace NVB::Engine
