#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include <QByteArray>
#include <QString>

namespace NVB::Engine {

class ObjectOpener;

// Reads a volume image back as ImageFileWriter wrote it, plain or enciphered;
// which of the two it is, the file's first bytes say. Enciphered bytes are
// handed out only after their chunk's tag has been checked, so nothing of a
// damaged or wrongly opened image reaches a target volume.
class ImageFileReader
{
public:
    ImageFileReader(const QString& path, const QString& password);
    ~ImageFileReader();
    ImageFileReader(const ImageFileReader&) = delete;
    ImageFileReader& operator=(const ImageFileReader&) = delete;

    // False, with error() set, when the file cannot be opened, or it is
    // enciphered and the password is missing or does not open it. Told from
    // the header alone, before any block is read.
    bool isOpen() const { return m_fd >= 0 && m_error.isEmpty(); }
    bool isEnciphered() const { return m_opener != nullptr; }
    // Exactly `size` plain bytes, or false: the file ended, or (error() set)
    // could not be read or failed its authentication.
    bool read(void* buffer, size_t size);
    // Whether the enciphered stream was closed by its last chunk with nothing
    // after it; a cut image fails here even when its blocks all came.
    bool finish();
    QString error() const { return m_error; }

private:
    QString m_path;
    int m_fd = -1;
    std::unique_ptr<ObjectOpener> m_opener;
    QByteArray m_plain;
    int m_position = 0;
    std::vector<char> m_cipher;
    QString m_error;
};

} // namespace NVB::Engine
