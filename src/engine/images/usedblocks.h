#pragma once

#include <optional>
#include <vector>

#include <QString>

namespace NVB::Engine {

// Which parts of a volume its file system uses, from the block bitmap of an
// ext2/3/4 file system (libext2fs). An image needs only those: what lies in
// free blocks is never read back by the file system.
class UsedBlocks
{
public:
    // Nullopt when the volume holds no ext file system or its bitmap cannot
    // be read; the caller then reads every block.
    static std::optional<UsedBlocks> read(const QString& device);

    // Whether any byte of [offset, offset + length) lies in a used block or
    // outside the file system.
    bool anyUsed(qint64 offset, qint64 length) const;
    // Zeroes the free file system blocks inside `data`, which holds the
    // bytes from `offset` on, so that they compress to nothing.
    void clearFree(char* data, qint64 offset, qint64 length) const;
    qint64 blockSize() const { return m_blockSize; }
    qint64 usedBytes() const;

private:
    qint64 m_blockSize = 0;
    std::vector<bool> m_used; // one per file system block
};

} // namespace NVB::Engine
