#pragma once

#include <cstddef>

#include <QByteArray>

namespace NVB::Engine {

// Cuts a stream of plain bytes into fixed-size blocks, whatever sizes the
// bytes arrive in, and hashes each block.
class BlockHasher
{
public:
    explicit BlockHasher(quint32 blockSize);

    void add(const char* data, size_t size);
    // Ends the stream: a last, shorter block is hashed too.
    QByteArray finish();

    static QByteArray hash(const char* data, size_t size);

private:
    quint32 m_blockSize;
    QByteArray m_partial;
    QByteArray m_hashes;
};

} // namespace NVB::Engine
