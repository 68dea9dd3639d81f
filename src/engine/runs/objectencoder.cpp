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

ObjectEncoder::ObjectEncoder(int fd, ObjectEncoding encoding, std::shared_ptr<const ObjectKey> key)
    : m_fd(fd)
    , m_encoding(encoding)
{
    if (isEnciphered(m_encoding) && key)
        m_sealer = std::make_unique<ObjectSealer>(std::move(key));
    if (isCompressed(m_encoding)) {
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
    if (!isCompressed(m_encoding))
        return emit(data, size);
    return compress(data, size, false);
}

bool ObjectEncoder::finish()
{
    if (isCompressed(m_encoding) && !compress(nullptr, 0, true))
        return false;
    if (!isEnciphered(m_encoding))
        return true;
    m_sealed.clear();
    if (!m_sealer || !m_sealer->finish(&m_sealed)) {
        errno = EINVAL;
        return false;
    }
    return put(m_sealed.constData(), size_t(m_sealed.size()));
}

bool ObjectEncoder::emit(const char* data, size_t size)
{
    if (!isEnciphered(m_encoding))
        return put(data, size);
    // No key: refuse rather than store what was meant to be secret in clear.
    m_sealed.clear();
    if (!m_sealer || !m_sealer->add(data, size, &m_sealed)) {
        errno = EINVAL;
        return false;
    }
    return put(m_sealed.constData(), size_t(m_sealed.size()));
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
        if (!emit(m_out.constData(), out.pos))
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
