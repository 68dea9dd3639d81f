#include "chunker.h"

namespace NVB::Engine {

namespace {

// splitmix64: a fixed, portable generator, so the gear table (and so every
// boundary) is the same on every machine and build.
quint64 splitMix(quint64& state)
{
    quint64 z = (state += 0x9E3779B97F4A7C15ULL);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
    return z ^ (z >> 31);
}

// The high bits of a gear hash depend on the last 64 bytes, the low ones
// on only a few, so masks take the top bits.
quint64 topBits(int count)
{
    return count <= 0 ? 0 : (~0ULL << (64 - count));
}

int log2Of(qint64 value)
{
    int bits = 0;
    while ((qint64(1) << (bits + 1)) <= value)
        ++bits;
    return bits;
}

} // namespace

Chunker::Chunker(quint64 seed)
    : Chunker(seed, MinimumSize, AverageSize, MaximumSize)
{ }

Chunker::Chunker(quint64 seed, qint64 minimumSize, qint64 averageSize, qint64 maximumSize)
    : m_minimum(qMax<qint64>(1, minimumSize))
    , m_average(qMax(m_minimum, averageSize))
    , m_maximum(qMax(m_average, maximumSize))
{
    quint64 state = seed ^ 0x6E76624348554E4BULL;
    for (quint64& value : m_gear)
        value = splitMix(state);
    const int bits = log2Of(m_average);
    m_strictMask = topBits(bits + 1);
    m_looseMask = topBits(bits - 2);
}

QVector<qint64> Chunker::push(const char* data, qint64 size)
{
    QVector<qint64> lengths;
    const auto* bytes = reinterpret_cast<const uchar*>(data);
    qint64 i = 0;
    while (i < size) {
        // Nothing below the minimum can end a chunk, so those bytes are not
        // even hashed; the hash restarts at every chunk.
        if (m_length < m_minimum) {
            const qint64 skip = qMin(m_minimum - m_length, size - i);
            m_length += skip;
            i += skip;
            continue;
        }
        // Two tight loops, one per mask, keep the per-byte work to a shift,
        // an add and a test.
        quint64 hash = m_hash;
        qint64 length = m_length;
        bool cut = false;
        for (const qint64 end = qMin(size, i + (m_average - 1 - length)); i < end;) {
            hash = (hash << 1) + m_gear[bytes[i++]];
            ++length;
            if ((hash & m_strictMask) == 0) {
                cut = true;
                break;
            }
        }
        if (!cut) {
            for (const qint64 end = qMin(size, i + (m_maximum - length)); i < end;) {
                hash = (hash << 1) + m_gear[bytes[i++]];
                ++length;
                if ((hash & m_looseMask) == 0) {
                    cut = true;
                    break;
                }
            }
            cut = cut || length >= m_maximum;
        }
        if (cut) {
            lengths.append(length);
            hash = 0;
            length = 0;
        }
        m_hash = hash;
        m_length = length;
    }
    return lengths;
}

qint64 Chunker::finish()
{
    const qint64 length = m_length;
    m_length = 0;
    m_hash = 0;
    return length;
}

} // namespace NVB::Engine
