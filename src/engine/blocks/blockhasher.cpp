#include "blockhasher.h"

#include <openssl/sha.h>

#include "blockmap.h"

namespace NVB::Engine {

BlockHasher::BlockHasher(quint32 blockSize)
    : m_blockSize(blockSize)
{
    m_partial.reserve(int(blockSize));
}

QByteArray BlockHasher::hash(const char* data, size_t size)
{
    unsigned char digest[SHA256_DIGEST_LENGTH];
    SHA256(reinterpret_cast<const unsigned char*>(data), size, digest);
    return QByteArray(reinterpret_cast<const char*>(digest), BlockMap::HashSize);
}

void BlockHasher::add(const char* data, size_t size)
{
    while (size > 0) {
        const size_t room = m_blockSize - size_t(m_partial.size());
        if (m_partial.isEmpty() && size >= m_blockSize) {
            // Whole blocks straight from the caller's buffer: no copy.
            m_hashes += hash(data, m_blockSize);
            data += m_blockSize;
            size -= m_blockSize;
            continue;
        }
        const size_t taken = qMin(room, size);
        m_partial.append(data, int(taken));
        data += taken;
        size -= taken;
        if (size_t(m_partial.size()) == m_blockSize) {
            m_hashes += hash(m_partial.constData(), m_blockSize);
            m_partial.clear();
        }
    }
}

QByteArray BlockHasher::finish()
{
    if (!m_partial.isEmpty())
        m_hashes += hash(m_partial.constData(), size_t(m_partial.size()));
    m_partial.clear();
    return m_hashes;
}

} // namespace NVB::Engine
