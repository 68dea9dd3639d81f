#pragma once

#include <sys/types.h>

#include <memory>

#include <QByteArray>
#include <QString>

#include "incrementheader.h"
#include "runs/objectencoding.h"

namespace NVB::Engine {

class FolderHandle;
class ObjectDecoder;

// Gives back a file's plain bytes from its full version and one increment:
// changed blocks from the increment, the others from the full version, both
// read front to back once. Whether the result is right is for the caller's
// checksum to say; a damaged increment or full version is an error here.
class IncrementReader
{
public:
    // `fd` is the increment object at its start, `encoding` its content's
    // encoding (ObjectEncoding::Increment included or not); the full version
    // is looked up below `storage`. Neither descriptor outlives the reader
    // unless the caller owns `fd`, which it does.
    IncrementReader(const FolderHandle& storage, int fd, ObjectEncoding encoding, const QString& password);
    ~IncrementReader();
    IncrementReader(const IncrementReader&) = delete;
    IncrementReader& operator=(const IncrementReader&) = delete;

    // Reads the header and opens the full version.
    bool open(QString* error);
    ssize_t read(char* data, size_t size, QString* error);

private:
    bool readBody(char* data, size_t size);
    bool readBase(char* data, size_t size);
    bool peekRecord();
    bool produce(QString* error);

    const FolderHandle& m_storage;
    int m_fd;
    ObjectEncoding m_encoding;
    QString m_password;
    IncrementHeader m_header;
    std::unique_ptr<ObjectDecoder> m_body;
    int m_baseFd = -1;
    std::unique_ptr<ObjectDecoder> m_base;
    QString m_problem;
    qint64 m_baseSize = 0;
    quint64 m_next = 0; // index of the next changed block
    bool m_bodyEnded = false;
    qint64 m_fileSize = 0; // known once the body ended
    quint64 m_index = 0;
    QByteArray m_block;
    int m_blockLength = 0;
    int m_blockPos = 0;
    bool m_done = false;
};

} // namespace NVB::Engine
