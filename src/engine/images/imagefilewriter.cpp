#include "imagefilewriter.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

#include <QFile>

#include "encryption/objectsealer.h"

namespace NVB::Engine {

ImageFileWriter::ImageFileWriter(const QString& path, std::shared_ptr<const ObjectKey> key)
    : m_path(path)
{
    m_fd = ::open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (m_fd < 0)
        m_error
            = QStringLiteral("Cannot write the image %1: %2").arg(path, QString::fromLocal8Bit(std::strerror(errno)));
    else if (key)
        m_sealer = std::make_unique<ObjectSealer>(std::move(key));
}

ImageFileWriter::~ImageFileWriter()
{
    if (m_fd >= 0)
        ::close(m_fd);
}

bool ImageFileWriter::write(const char* data, size_t size)
{
    if (!m_sealer)
        return writeAll(data, size);
    m_sealed.clear();
    if (!m_sealer->add(data, size, &m_sealed)) {
        m_error = QStringLiteral("Cannot encipher the image %1").arg(m_path);
        return false;
    }
    return writeAll(m_sealed.constData(), size_t(m_sealed.size()));
}

bool ImageFileWriter::finish()
{
    if (m_sealer) {
        m_sealed.clear();
        if (!m_sealer->finish(&m_sealed)) {
            m_error = QStringLiteral("Cannot encipher the image %1").arg(m_path);
            return false;
        }
        if (!writeAll(m_sealed.constData(), size_t(m_sealed.size())))
            return false;
    }
    if (::fsync(m_fd) != 0) {
        m_error
            = QStringLiteral("Cannot write the image %1: %2").arg(m_path, QString::fromLocal8Bit(std::strerror(errno)));
        return false;
    }
    return true;
}

bool ImageFileWriter::writeAll(const char* data, size_t size)
{
    size_t done = 0;
    while (done < size) {
        const ssize_t n = ::write(m_fd, data + done, size - done);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0) {
            m_error = QStringLiteral("Cannot write the image %1: %2")
                          .arg(m_path, QString::fromLocal8Bit(std::strerror(n < 0 ? errno : ENOSPC)));
            return false;
        }
        done += size_t(n);
    }
    m_written += qint64(size);
    return true;
}

} // namespace NVB::Engine
