#include "blockdiffer.h"

#include <cerrno>
#include <cstring>
#include <unistd.h>

#include <openssl/evp.h>

#include <QtEndian>

#include "blockhasher.h"
#include "incrementheader.h"

namespace NVB::Engine {

namespace {

void appendNumber(QByteArray* out, quint64 value)
{
    char bytes[8];
    qToLittleEndian<quint64>(value, bytes);
    out->append(bytes, 8);
}

} // namespace

BlockDiffer::BlockDiffer(int fd, const BlockMap& base, qint64 changedLimit)
    : m_fd(fd)
    , m_base(base)
    , m_limit(changedLimit)
    , m_block(int(base.blockSize), Qt::Uninitialized)
    , m_digest(EVP_MD_CTX_new())
{
    if (m_digest)
        EVP_DigestInit_ex(m_digest, EVP_sha256(), nullptr);
    appendNumber(&m_pending, quint64(base.size));
}

BlockDiffer::~BlockDiffer()
{
    EVP_MD_CTX_free(m_digest);
}

ssize_t BlockDiffer::read(char* data, size_t size, QString* error)
{
    while (m_pendingPos == m_pending.size()) {
        if (m_ended)
            return 0;
        m_pending.clear();
        m_pendingPos = 0;
        if (!produce(error))
            return -1;
    }
    const size_t taken = qMin(size, size_t(m_pending.size() - m_pendingPos));
    std::memcpy(data, m_pending.constData() + m_pendingPos, taken);
    m_pendingPos += int(taken);
    return ssize_t(taken);
}

bool BlockDiffer::produce(QString* error)
{
    if (!m_digest) {
        *error = QStringLiteral("cannot compute checksums");
        return false;
    }
    size_t filled = 0;
    while (filled < size_t(m_block.size())) {
        const ssize_t got = ::read(m_fd, m_block.data() + filled, size_t(m_block.size()) - filled);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0) {
            *error = QString::fromLocal8Bit(std::strerror(errno));
            return false;
        }
        if (got == 0)
            break;
        filled += size_t(got);
    }
    if (filled == 0) {
        unsigned char digest[EVP_MAX_MD_SIZE];
        unsigned int length = 0;
        EVP_DigestFinal_ex(m_digest, digest, &length);
        m_checksum = QByteArray(reinterpret_cast<const char*>(digest), int(length));
        appendNumber(&m_pending, IncrementHeader::EndMark);
        appendNumber(&m_pending, quint64(m_fileSize));
        m_pending += m_checksum;
        m_ended = true;
        return true;
    }
    EVP_DigestUpdate(m_digest, m_block.constData(), filled);
    m_fileSize += qint64(filled);
    const QByteArray hash = BlockHasher::hash(m_block.constData(), filled);
    if (m_index >= m_base.count() || std::memcmp(hash.constData(), m_base.hash(m_index), BlockMap::HashSize) != 0) {
        m_changed += qint64(filled);
        if (m_limit >= 0 && m_changed > m_limit) {
            m_overLimit = true;
            *error = QStringLiteral("too much of it changed for a block increment");
            return false;
        }
        appendNumber(&m_pending, quint64(m_index));
        char length[4];
        qToLittleEndian<quint32>(quint32(filled), length);
        m_pending.append(length, 4);
        m_pending.append(m_block.constData(), int(filled));
    }
    ++m_index;
    return true;
}

} // namespace NVB::Engine
