#pragma once

#include <sys/types.h>

#include <memory>

#include <QByteArray>
#include <QString>

#include "blockmap.h"

typedef struct evp_md_ctx_st EVP_MD_CTX;

namespace NVB::Engine {

// Reads a changed file and hands out, in place of its bytes, the body of an
// increment against its full version (see IncrementHeader): only the blocks
// whose hash differs from the full version's map, or that lie past its end.
// One pass over the file, nothing held but one block.
class BlockDiffer
{
public:
    // `changedLimit`: once more bytes than this differ, reading fails and
    // overLimit() turns true (a full version is worth storing again); -1 for
    // no limit.
    BlockDiffer(int fd, const BlockMap& base, qint64 changedLimit);
    ~BlockDiffer();
    BlockDiffer(const BlockDiffer&) = delete;
    BlockDiffer& operator=(const BlockDiffer&) = delete;

    // Bytes of the increment's body, 0 at its end, -1 with `error` set.
    ssize_t read(char* data, size_t size, QString* error);

    bool overLimit() const { return m_overLimit; }
    // Known once the body was read to its end.
    QByteArray checksum() const { return m_checksum; }
    qint64 fileSize() const { return m_fileSize; }
    qint64 changedBytes() const { return m_changed; }

private:
    bool produce(QString* error);

    int m_fd;
    const BlockMap& m_base;
    qint64 m_limit;
    QByteArray m_block;
    QByteArray m_pending;
    int m_pendingPos = 0;
    bool m_ended = false;
    bool m_overLimit = false;
    int m_index = 0;
    qint64 m_fileSize = 0;
    qint64 m_changed = 0;
    QByteArray m_checksum;
    EVP_MD_CTX* m_digest;
};

} // namespace NVB::Engine
