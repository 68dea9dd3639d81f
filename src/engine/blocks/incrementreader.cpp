#include "incrementreader.h"

#include <cstring>
#include <unistd.h>

#include <QtEndian>

#include "runs/folderhandle.h"
#include "runs/objectdecoder.h"

namespace NVB::Engine {

namespace {

bool readFully(ObjectDecoder& decoder, char* data, size_t size)
{
    while (size > 0) {
        const ssize_t got = decoder.read(data, size);
        if (got <= 0)
            return false;
        data += got;
        size -= size_t(got);
    }
    return true;
}

} // namespace

IncrementReader::IncrementReader(const FolderHandle& storage, int fd, ObjectEncoding encoding, const QString& password)
    : m_storage(storage)
    , m_fd(fd)
    , m_encoding(ObjectEncoding(int(encoding) & ~int(ObjectEncoding::Increment)))
    , m_password(password)
{ }

IncrementReader::~IncrementReader()
{
    m_base.reset();
    if (m_baseFd >= 0)
        ::close(m_baseFd);
}

bool IncrementReader::open(QString* error)
{
    auto header = IncrementHeader::read(m_fd, error);
    if (!header) {
        *error = QStringLiteral("the increment is damaged: %1").arg(*error);
        return false;
    }
    m_header = *header;
    if (m_header.blockSize > (1u << 30)) {
        *error = QStringLiteral("the increment is damaged: its block size is out of range");
        return false;
    }
    QString missing;
    m_baseFd = IncrementHeader::openObject(m_storage, m_header.baseObject, &missing);
    if (m_baseFd < 0) {
        *error = QStringLiteral("its full version is gone: %1").arg(missing);
        return false;
    }
    m_body = std::make_unique<ObjectDecoder>(m_fd, m_encoding, m_password);
    m_base = std::make_unique<ObjectDecoder>(
        m_baseFd, ObjectEncoding(m_header.baseEncoding & ~int(ObjectEncoding::Increment)), m_password);
    char size[8];
    if (!readBody(size, 8) || !peekRecord()) {
        *error = m_problem;
        return false;
    }
    m_baseSize = qFromLittleEndian<qint64>(size);
    m_block.resize(int(m_header.blockSize));
    return true;
}

bool IncrementReader::readBody(char* data, size_t size)
{
    if (readFully(*m_body, data, size))
        return true;
    m_problem = m_body->error().isEmpty() ? QStringLiteral("the increment is cut short")
                                          : QStringLiteral("the increment is damaged: %1").arg(m_body->error());
    return false;
}

bool IncrementReader::readBase(char* data, size_t size)
{
    if (readFully(*m_base, data, size))
        return true;
    m_problem = m_base->error().isEmpty()
        ? QStringLiteral("its full version %1 is cut short").arg(m_header.baseObject)
        : QStringLiteral("its full version %1 is damaged: %2").arg(m_header.baseObject, m_base->error());
    return false;
}

bool IncrementReader::peekRecord()
{
    char index[8];
    if (!readBody(index, 8))
        return false;
    const quint64 next = qFromLittleEndian<quint64>(index);
    if (next != IncrementHeader::EndMark) {
        m_next = next;
        return true;
    }
    char end[8 + 32];
    if (!readBody(end, sizeof end))
        return false;
    m_fileSize = qFromLittleEndian<qint64>(end);
    m_bodyEnded = true;
    return true;
}

bool IncrementReader::produce(QString* error)
{
    const qint64 blockSize = m_header.blockSize;
    const qint64 start = qint64(m_index) * blockSize;
    const qint64 baseLength = qBound<qint64>(0, m_baseSize - start, blockSize);
    if (!m_bodyEnded && m_next == m_index) {
        char length[4];
        if (!readBody(length, 4)) {
            *error = m_problem;
            return false;
        }
        const quint32 size = qFromLittleEndian<quint32>(length);
        if (size == 0 || size > m_header.blockSize || !readBody(m_block.data(), size)) {
            *error = m_problem.isEmpty() ? QStringLiteral("the increment is damaged: a block has a wrong length")
                                         : m_problem;
            return false;
        }
        // The full version's own block here is read past: its decoder goes
        // front to back only.
        QByteArray skipped(int(baseLength), Qt::Uninitialized);
        if (baseLength > 0 && !readBase(skipped.data(), size_t(baseLength))) {
            *error = m_problem;
            return false;
        }
        m_blockLength = int(size);
        ++m_index;
        if (!peekRecord()) {
            *error = m_problem;
            return false;
        }
        if (!m_bodyEnded && m_next < m_index) {
            *error = QStringLiteral("the increment is damaged: its blocks are out of order");
            return false;
        }
    } else {
        if (m_bodyEnded && start >= m_fileSize) {
            m_done = true;
            m_blockLength = 0;
            return true;
        }
        const qint64 length = m_bodyEnded ? qMin(blockSize, m_fileSize - start) : blockSize;
        if (baseLength < length) {
            *error = QStringLiteral("its full version %1 is shorter than the increment needs").arg(m_header.baseObject);
            return false;
        }
        if (!readBase(m_block.data(), size_t(length))) {
            *error = m_problem;
            return false;
        }
        m_blockLength = int(length);
        ++m_index;
    }
    m_blockPos = 0;
    return true;
}

ssize_t IncrementReader::read(char* data, size_t size, QString* error)
{
    if (!m_body) {
        *error = QStringLiteral("the increment is not open");
        return -1;
    }
    while (m_blockPos == m_blockLength) {
        if (m_done)
            return 0;
        if (!produce(error))
            return -1;
        if (m_done)
            return 0;
    }
    const size_t taken = qMin(size, size_t(m_blockLength - m_blockPos));
    std::memcpy(data, m_block.constData() + m_blockPos, taken);
    m_blockPos += int(taken);
    return ssize_t(taken);
}

} // namespace NVB::Engine
