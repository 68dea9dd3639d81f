#include "objectdecoder.h"

#include <cerrno>
#include <cstring>
#include <unistd.h>

#include <zstd.h>

namespace NVB::Engine {

namespace {

// As for compression: one context a worker, not one a file.
ZSTD_DCtx* threadContext()
{
    struct Owner
    {
        ZSTD_DCtx* context = ZSTD_createDCtx();
        ~Owner() { ZSTD_freeDCtx(context); }
    };
    thread_local Owner owner;
    return owner.context;
}

} // namespace

ObjectDecoder::ObjectDecoder(int fd, ObjectEncoding encoding)
    : m_fd(fd)
    , m_encoding(encoding)
{
    if (m_encoding == ObjectEncoding::Zstd) {
        m_context = threadContext();
        if (m_context)
            ZSTD_DCtx_reset(m_context, ZSTD_reset_session_and_parameters);
        m_in.resize(int(ZSTD_DStreamInSize()));
    }
}

ObjectDecoder::~ObjectDecoder() = default;

ssize_t ObjectDecoder::readRaw(char* buffer, size_t capacity)
{
    for (;;) {
        const ssize_t got = ::read(m_fd, buffer, capacity);
        if (got >= 0)
            return got;
        if (errno != EINTR) {
            m_error = QString::fromLocal8Bit(std::strerror(errno));
            return -1;
        }
    }
}

ssize_t ObjectDecoder::read(char* buffer, size_t capacity)
{
    if (m_encoding == ObjectEncoding::Plain)
        return readRaw(buffer, capacity);
    if (!m_context) {
        m_error = QStringLiteral("out of memory");
        return -1;
    }
    for (;;) {
        if (m_inPos == m_inSize && !m_inEnded) {
            const ssize_t got = readRaw(m_in.data(), size_t(m_in.size()));
            if (got < 0)
                return -1;
            m_inPos = 0;
            m_inSize = size_t(got);
            m_inEnded = got == 0;
        }
        if (m_inPos == m_inSize && m_inEnded) {
            if (m_frameLeft != 0) {
                m_error = QStringLiteral("the compressed data ends too early");
                return -1;
            }
            return 0;
        }
        ZSTD_inBuffer in {m_in.constData(), m_inSize, m_inPos};
        ZSTD_outBuffer out {buffer, capacity, 0};
        const size_t left = ZSTD_decompressStream(m_context, &out, &in);
        m_inPos = in.pos;
        if (ZSTD_isError(left)) {
            m_error
                = QStringLiteral("the compressed data is damaged (%1)").arg(QString::fromUtf8(ZSTD_getErrorName(left)));
            return -1;
        }
        m_frameLeft = left;
        if (out.pos > 0)
            return ssize_t(out.pos);
    }
}

} // namespace NVB::Engine
