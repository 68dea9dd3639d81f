#include "usedblocks.h"

#include <cstring>

#include <ext2fs/ext2fs.h>

#include <QFile>

namespace NVB::Engine {

std::optional<UsedBlocks> UsedBlocks::read(const QString& device)
{
    ext2_filsys fs = nullptr;
    if (ext2fs_open(QFile::encodeName(device).constData(), EXT2_FLAG_64BITS, 0, 0, unix_io_manager, &fs) != 0)
        return std::nullopt;
    std::optional<UsedBlocks> blocks;
    if (ext2fs_read_block_bitmap(fs) == 0) {
        blocks.emplace();
        blocks->m_blockSize = fs->blocksize;
        const blk64_t count = ext2fs_blocks_count(fs->super);
        const blk64_t first = fs->super->s_first_data_block;
        blocks->m_used.assign(size_t(count), true);
        // Blocks before the first data block (the boot block of 1 KiB file
        // systems) stay used: the bitmap does not cover them.
        for (blk64_t block = first; block < count; ++block)
            blocks->m_used[size_t(block)] = ext2fs_test_block_bitmap2(fs->block_map, block) != 0;
    }
    ext2fs_close_free(&fs);
    return blocks;
}

bool UsedBlocks::anyUsed(qint64 offset, qint64 length) const
{
    if (length <= 0)
        return false;
    const qint64 first = offset / m_blockSize;
    const qint64 last = (offset + length - 1) / m_blockSize;
    for (qint64 block = first; block <= last; ++block) {
        if (block >= qint64(m_used.size()) || m_used[size_t(block)])
            return true;
    }
    return false;
}

void UsedBlocks::clearFree(char* data, qint64 offset, qint64 length) const
{
    for (qint64 at = offset; at < offset + length;) {
        const qint64 block = at / m_blockSize;
        const qint64 end = qMin(offset + length, (block + 1) * m_blockSize);
        if (block < qint64(m_used.size()) && !m_used[size_t(block)])
            std::memset(data + (at - offset), 0, size_t(end - at));
        at = end;
    }
}

qint64 UsedBlocks::usedBytes() const
{
    qint64 used = 0;
    for (const bool block : m_used)
        used += block ? m_blockSize : 0;
    return used;
}

} // namespace NVB::Engine
