#include "objectencoder.h"

#include <cerrno>
#include <unistd.h>

#include <zstd.h>

namespace NVB::Engine {

namespace {

// Level 3 is zstd's own default: several times faster than gzip at a similar
// ratio, so a backup stays bound by reading the source, not by compressing.
constexpr int CompressionLevel = 3;

// A context holds several hundred KiB of tables; making one per file would
// cost more than compressing a small file, so each worker keeps its own.
ZSTD_CCtx* threadContext()
{
    struct Owner
    {
        ZSTD_CCtx* context = ZSTD_createCCtx();
        ~Owner() { ZSTD_freeCCtx(context); }
    };
    thread_local Owner owner;
    return owner.context;
}

} // namespace

ObjectEncoder::ObjectEncoder(int fd, ObjectEncoding encoding)
    : m_fd(fd)
    , m_encoding(encoding)
{
    if (m_encoding == ObjectEncoding::Zstd) {
        m_context = threadContext();
        if (m_context) {
            ZSTD_CCtx_reset(m_context, ZSTD_reset_session_and_parameters);
            ZSTD_CCtx_setParameter(m_context, ZSTD_c_compressionLevel, CompressionLevel);
        }
        m_out.resize(int(ZSTD_CStreamOutSize()));
    }
}

ObjectEncoder::~ObjectEncoder() = default;

bool ObjectEncoder::write(const char* data, size_t size)
{
    if (m_encoding == ObjectEncoding::Plain)
        return put(data, size);
    return compress(data, size, false);
}

bool ObjectEncoder::finish()
{
    if (m_encoding == ObjectEncoding::Plain)
        return true;
    return compress(nullptr, 0, true);
}

bool ObjectEncoder::compress(const char* data, size_t size, bool end)
{
    if (!m_context) {
        errno = ENOMEM;
        return false;
    }
    ZSTD_inBuffer in {data, size, 0};
    for (;;) {
        ZSTD_outBuffer out {m_out.data(), size_t(m_out.size()), 0};
        const size_t left = ZSTD_compressStream2(m_context, &out, &in, end ? ZSTD_e_end : ZSTD_e_continue);
        if (ZSTD_isError(left)) {
            errno = EIO;
            return false;
        }
        if (!put(m_out.constData(), out.pos))
            return false;
        if (end ? left == 0 : in.pos == in.size)
            return true;
    }
}

bool ObjectEncoder::put(const char* data, size_t size)
{
    for (size_t written = 0; written < size;) {
        const ssize_t put = ::write(m_fd, data + written, size - written);
        if (put < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        written += size_t(put);
    }
    m_stored += qint64(size);
    return true;
}

} // namespace NVB::Engine
