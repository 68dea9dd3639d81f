#pragma once

#include <cstddef>
#include <memory>

#include <QByteArray>
#include <QString>

#include "objectkey.h"

namespace NVB::Engine {

// Reads back what ObjectSealer wrote. Data is fed as it comes; plain bytes
// come out only after their chunk's tag has been checked.
class ObjectOpener
{
public:
    explicit ObjectOpener(QString password);

    // Appends the plain bytes of every chunk completed by `data` to `plain`.
    // False, with error() set, on a wrong password or damaged data.
    bool feed(const char* data, size_t size, QByteArray* plain);
    // False unless the last chunk has been read: a cut object is damaged.
    bool finish();
    QString error() const { return m_error; }

    // Whether `password` opens the enciphered object open on `fd`, from its
    // header alone: ObjectKey::wrongPasswordMessage() when it does not,
    // empty when it does or when the header cannot tell (damage is left to
    // the file's own restore).
    static QString wrongPassword(int fd, const QString& password);
    // The key the object open on `fd` was enciphered with, when `password`
    // opens it; null otherwise.
    static std::shared_ptr<const ObjectKey> keyOf(int fd, const QString& password);

private:
    bool readHeader();
    bool openChunk(QByteArray* plain, bool* progressed);

    QString m_password;
    std::shared_ptr<const ObjectKey> m_key;
    QByteArray m_header;
    QByteArray m_buffer;
    quint32 m_chunk = 0;
    bool m_ended = false;
    QString m_error;
};

} // namespace NVB::Engine
