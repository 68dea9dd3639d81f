#pragma once

#include <cstddef>
#include <memory>

#include <QByteArray>

#include "objectkey.h"

namespace NVB::Engine {

// Enciphers a stream with AES-GCM in chunks, each authenticated on its own,
// so that an object is written and read without holding it whole, and a cut,
// reordered or altered chunk fails to open.
//
// Layout: a header ("NVBC", version, key length, iterations, salt, key check,
// a random nonce prefix), then chunks of a 4-byte big-endian plain length
// (the top bit marks the last chunk), the ciphertext and a 16-byte tag. The
// nonce is the prefix and the chunk's number; the header and the length word
// are authenticated with every chunk.
class ObjectSealer
{
public:
    static constexpr int ChunkSize = 64 * 1024;
    static constexpr int TagSize = 16;
    static constexpr int NoncePrefixSize = 8;
    static constexpr int HeaderSize = 4 + 1 + 1 + 2 + 4 + ObjectKey::SaltSize + ObjectKey::CheckSize + NoncePrefixSize;
    static constexpr quint32 LastFlag = 0x80000000u;
    static const char Magic[4];

    explicit ObjectSealer(std::shared_ptr<const ObjectKey> key);

    // Appends what is to be stored for `data` to `out`; false when the
    // cipher fails (never for a valid key).
    bool add(const char* data, size_t size, QByteArray* out);
    // Seals the last chunk, empty or not; nothing may follow.
    bool finish(QByteArray* out);

private:
    bool seal(bool last, QByteArray* out);

    std::shared_ptr<const ObjectKey> m_key;
    QByteArray m_noncePrefix;
    QByteArray m_header;
    QByteArray m_pending;
    quint32 m_chunk = 0;
    bool m_headerWritten = false;
};

} // namespace NVB::Engine
