#pragma once

#include <cstddef>
#include <memory>

#include <QByteArray>
#include <QString>

namespace NVB::Engine {

class ObjectKey;
class ObjectSealer;

// Where a volume image's bytes go: the image file, as they come or, under a
// key, enciphered in authenticated chunks (ObjectSealer) so that the storage
// holds nothing of the volume and a cut or altered image fails to open.
class ImageFileWriter
{
public:
    ImageFileWriter(const QString& path, std::shared_ptr<const ObjectKey> key);
    ~ImageFileWriter();
    ImageFileWriter(const ImageFileWriter&) = delete;
    ImageFileWriter& operator=(const ImageFileWriter&) = delete;

    // False, with error() set, when the file could not be made.
    bool isOpen() const { return m_fd >= 0; }
    bool write(const char* data, size_t size);
    // Seals the last chunk and flushes the file to its disk.
    bool finish();
    QString error() const { return m_error; }
    qint64 written() const { return m_written; }

private:
    bool writeAll(const char* data, size_t size);

    QString m_path;
    int m_fd = -1;
    std::unique_ptr<ObjectSealer> m_sealer;
    QByteArray m_sealed;
    qint64 m_written = 0;
    QString m_error;
};

} // namespace NVB::Engine
