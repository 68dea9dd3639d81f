#pragma once

#include <cstddef>
#include <memory>

#include <QByteArray>

#include "objectencoding.h"

typedef struct ZSTD_CCtx_s ZSTD_CCtx;

namespace NVB::Engine {

// Writes a file's plain bytes to a storage object in the object's encoding.
// A failed write leaves errno as the system set it, so callers can tell a
// full storage from other faults.
class ObjectEncoder
{
public:
    ObjectEncoder(int fd, ObjectEncoding encoding);
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
    bool put(const char* data, size_t size);

    int m_fd;
    ObjectEncoding m_encoding;
    ZSTD_CCtx* m_context = nullptr; // the thread's own: one encoder at a time a thread
    QByteArray m_out;
    qint64 m_stored = 0;
};

} // namespace NVB::Engine
