#include "imagefilereader.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

#include <QFile>

#include "encryption/objectopener.h"
#include "encryption/objectsealer.h"

namespace NVB::Engine {

namespace {

// Enciphered input is read this much at a time: a few of the sealer's chunks.
constexpr int ReadSize = 4 * ObjectSealer::ChunkSize;

QString systemError()
{
    return QString::fromLocal8Bit(std::strerror(errno));
}

// Reads up to `size` bytes; the count, 0 at the end, -1 on an error.
ssize_t readSome(int fd, char* buffer, size_t size)
{
    for (;;) {
        const ssize_t n = ::read(fd, buffer, size);
        if (n < 0 && errno == EINTR)
            continue;
        return n;
    }
}

} // namespace

ImageFileReader::ImageFileReader(const QString& path, const QString& password)
    : m_path(path)
    , m_cipher(size_t(ReadSize))
{
    m_fd = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (m_fd < 0) {
        m_error = QStringLiteral("Cannot open the image %1: %2").arg(path, systemError());
        return;
    }
    char magic[sizeof(ObjectSealer::Magic)] = {};
    if (::pread(m_fd, magic, sizeof(magic), 0) != ssize_t(sizeof(magic))
        || std::memcmp(magic, ObjectSealer::Magic, sizeof(magic)) != 0)
        return;
    if (password.isEmpty()) {
        m_error = QStringLiteral("The image %1 is enciphered: the restore needs the backup plan's encryption password")
                      .arg(path);
        return;
    }
    m_error = ObjectOpener::wrongPassword(m_fd, password);
    m_opener = std::make_unique<ObjectOpener>(password);
}

ImageFileReader::~ImageFileReader()
{
    if (m_fd >= 0)
        ::close(m_fd);
}

bool ImageFileReader::read(void* buffer, size_t size)
{
    if (!isOpen())
        return false;
    char* out = static_cast<char*>(buffer);
    if (!m_opener) {
        size_t done = 0;
        while (done < size) {
            const ssize_t n = readSome(m_fd, out + done, size - done);
            if (n < 0)
                m_error = QStringLiteral("Cannot read the image %1: %2").arg(m_path, systemError());
            if (n <= 0)
                return false;
            done += size_t(n);
        }
        return true;
    }
    while (m_plain.size() - m_position < int(size)) {
        if (m_position > 0) {
            m_plain.remove(0, m_position);
            m_position = 0;
        }
        const ssize_t n = readSome(m_fd, m_cipher.data(), size_t(ReadSize));
        if (n < 0)
            m_error = QStringLiteral("Cannot read the image %1: %2").arg(m_path, systemError());
        if (n <= 0)
            return false;
        if (!m_opener->feed(m_cipher.data(), size_t(n), &m_plain)) {
            m_error = m_opener->error();
            return false;
        }
    }
    std::memcpy(out, m_plain.constData() + m_position, size);
    m_position += int(size);
    return true;
}

bool ImageFileReader::finish()
{
    if (!isOpen())
        return false;
    if (!m_opener)
        return true;
    // Whatever follows the end marker must be the rest of the last chunk.
    for (;;) {
        const ssize_t n = readSome(m_fd, m_cipher.data(), size_t(ReadSize));
        if (n < 0) {
            m_error = QStringLiteral("Cannot read the image %1: %2").arg(m_path, systemError());
            return false;
        }
        if (n == 0)
            break;
        if (!m_opener->feed(m_cipher.data(), size_t(n), &m_plain)) {
            m_error = m_opener->error();
            return false;
        }
    }
    if (!m_opener->finish() || m_plain.size() != m_position) {
        m_error = m_opener->error().isEmpty() ? QStringLiteral("it has bytes after its end") : m_opener->error();
        return false;
    }
    return true;
}

} // namespace NVB::Engine
