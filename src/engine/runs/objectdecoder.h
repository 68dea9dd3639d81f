#pragma once

#include <cstddef>
#include <memory>

#include <QByteArray>
#include <QString>

#include "encryption/objectopener.h"
#include "objectencoding.h"

typedef struct ZSTD_DCtx_s ZSTD_DCtx;

namespace NVB::Engine {

// Reads a storage object back as the file's plain bytes. A damaged or cut
// short object is an error, never a short file.
class ObjectDecoder
{
public:
    // An enciphered object is opened with `password`; a wrong one fails the
    // first read with ObjectKey::wrongPasswordMessage().
    ObjectDecoder(int fd, ObjectEncoding encoding, const QString& password = QString());
    ~ObjectDecoder();
    ObjectDecoder(const ObjectDecoder&) = delete;
    ObjectDecoder& operator=(const ObjectDecoder&) = delete;

    // Plain bytes into `buffer`: their count, 0 at the end, -1 on an error
    // (errno set for a failed read; error() tells either way).
    ssize_t read(char* buffer, size_t capacity);
    QString error() const { return m_error; }

private:
    ssize_t readRaw(char* buffer, size_t capacity);
    // The object's bytes with any encipherment taken off.
    ssize_t readStored(char* buffer, size_t capacity);

    int m_fd;
    ObjectEncoding m_encoding;
    ZSTD_DCtx* m_context = nullptr; // the thread's own, unless another decoder holds it
    ZSTD_DCtx* m_ownContext = nullptr;
    bool m_borrowed = false;
    QByteArray m_in;
    size_t m_inPos = 0;
    size_t m_inSize = 0;
    bool m_inEnded = false;
    size_t m_frameLeft = 1; // what the last decompress call said was missing
    QString m_error;
    std::unique_ptr<ObjectOpener> m_opener;
    QByteArray m_opened;
    int m_openedPos = 0;
    bool m_storedEnded = false;
};

} // namespace NVB::Engine
