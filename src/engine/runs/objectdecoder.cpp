#include "objectdecoder.h"

#include <cerrno>
#include <cstring>
#include <unistd.h>

#include <zstd.h>

namespace NVB::Engine {

namespace {

// As for compression: one context a worker, not one a file. A block
// increment reads its full version alongside, so a second decoder on the
// same thread gets a context of its own.
struct ThreadContext
{
    ZSTD_DCtx* context = ZSTD_createDCtx();
    bool busy = false;
    ~ThreadContext() { ZSTD_freeDCtx(context); }
};

ThreadContext& threadContext()
{
    thread_local ThreadContext owner;
    return owner;
}

} // namespace

ObjectDecoder::ObjectDecoder(int fd, ObjectEncoding encoding, const QString& password)
    : m_fd(fd)
    , m_encoding(encoding)
{
    if (isEnciphered(m_encoding))
        m_opener = std::make_unique<ObjectOpener>(password);
    if (isCompressed(m_encoding)) {
        ThreadContext& shared = threadContext();
        if (shared.busy) {
            m_ownContext = ZSTD_createDCtx();
            m_context = m_ownContext;
        } else {
            shared.busy = true;
            m_borrowed = true;
            m_context = shared.context;
        }
        if (m_context)
            ZSTD_DCtx_reset(m_context, ZSTD_reset_session_and_parameters);
        m_in.resize(int(ZSTD_DStreamInSize()));
    }
}

ObjectDecoder::~ObjectDecoder()
{
    if (m_borrowed)
        threadContext().busy = false;
    ZSTD_freeDCtx(m_ownContext);
}

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

ssize_t ObjectDecoder::readStored(char* buffer, size_t capacity)
{
    if (!m_opener)
        return readRaw(buffer, capacity);
    while (m_openedPos == m_opened.size()) {
        if (m_storedEnded)
            return 0;
        m_opened.clear();
        m_openedPos = 0;
        char raw[64 * 1024];
        const ssize_t got = readRaw(raw, sizeof raw);
        if (got < 0)
            return -1;
        if (got == 0) {
            m_storedEnded = true;
            if (!m_opener->finish()) {
                m_error = m_opener->error();
                return -1;
            }
            return 0;
        }
        if (!m_opener->feed(raw, size_t(got), &m_opened)) {
            m_error = m_opener->error();
            return -1;
        }
    }
    const size_t take = qMin(capacity, size_t(m_opened.size() - m_openedPos));
    std::memcpy(buffer, m_opened.constData() + m_openedPos, take);
    m_openedPos += int(take);
    return ssize_t(take);
}

ssize_t ObjectDecoder::read(char* buffer, size_t capacity)
{
    if (!isCompressed(m_encoding))
        return readStored(buffer, capacity);
    if (!m_context) {
        m_error = QStringLiteral("out of memory");
        return -1;
    }
    for (;;) {
        if (m_inPos == m_inSize && !m_inEnded) {
            const ssize_t got = readStored(m_in.data(), size_t(m_in.size()));
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
