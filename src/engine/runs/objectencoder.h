#pragma once

#include <cstddef>
#include <memory>

#include <QByteArray>

#include "encryption/objectsealer.h"
#include "objectencoding.h"

typedef struct ZSTD_CCtx_s ZSTD_CCtx;

namespace NVB::Engine {

// Writes a file's plain bytes to a storage object in the object's encoding.
// A failed write leaves errno as the system set it, so callers can tell a
// full storage from other faults.
class ObjectEncoder
{
public:
    // An enciphered encoding needs the key; without one every write fails.
    ObjectEncoder(int fd, ObjectEncoding encoding, std::shared_ptr<const ObjectKey> key = {});
    ~ObjectEncoder();
    ObjectEncoder(const ObjectEncoder&) = delete;
    ObjectEncoder& operator=(const ObjectEncoder&) = delete;

    bool write(const char* data, size_t size);
    // Ends the object (the zstd frame's epilogue); nothing may follow.
    bool finish();
    // Bytes that reached the object so far.
    qint64 storedSize() const { return m_stored; }

private:
    bool compress(const char* data, size_t size, bool end);
    // Compressed or plain bytes on their way out: enciphered when asked.
    bool emit(const char* data, size_t size);
    bool put(const char* data, size_t size);

    int m_fd;
    ObjectEncoding m_encoding;
    ZSTD_CCtx* m_context = nullptr; // the thread's own: one encoder at a time a thread
    std::unique_ptr<ObjectSealer> m_sealer;
    QByteArray m_out;
    QByteArray m_sealed;
    qint64 m_stored = 0;
};

} // namespace NVB::Engine
