#pragma once

#include <atomic>
#include <functional>

#include <QString>
#include <QStringList>

namespace NVB::Engine {

// A volume copied block by block into one image file and back. Blocks that
// hold only zeros are not stored; the others are stored with zstd when
// asked. An image file: the magic "NVBIMG01", the block size (u32), the
// volume size (u64), then per stored block its index (u64), its stored length
// (u32), its encoding (u8: 0 plain, 1 zstd) and the bytes; an index of all
// ones with the count of stored blocks ends it. Numbers are little-endian.
class VolumeImage
{
public:
    struct Options
    {
        qint64 blockSize = 1 << 20;
        bool compress = true;
        // Unreadable blocks become zeros with a warning instead of failing.
        bool ignoreBadSectors = false;
    };

    struct Result
    {
        bool ok = false;
        QString error;
        QStringList warnings;
        qint64 volumeSize = 0;
        qint64 blocksStored = 0;
        qint64 blocksSkipped = 0;
        qint64 storedBytes = 0;
    };

    // Bytes done and the total, after each block.
    using Progress = std::function<void(qint64 done, qint64 total)>;

    static Result backup(const QString& device, const QString& imagePath, const Options& options,
        const std::atomic_bool& stop, const Progress& progress = {});
    // Writes the image over `device`, which must be unmounted and at least as
    // large as the imaged volume; the blocks not stored are zeroed.
    static Result restore(
        const QString& imagePath, const QString& device, const std::atomic_bool& stop, const Progress& progress = {});
};

} // namespace NVB::Engine
