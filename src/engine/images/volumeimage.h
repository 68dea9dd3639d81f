#pragma once

#include <atomic>
#include <functional>
#include <memory>

#include <QString>
#include <QStringList>

namespace NVB::Engine {

class ObjectKey;

// A volume copied block by block into one image file and back. Blocks that
// hold only zeros are not stored; the others are stored with zstd when
// asked. An image file: the magic "NVBIMG01", the block size (u32), the
// volume size (u64), then per stored block its index (u64), its stored length
// (u32), its encoding (u8: 0 plain, 1 zstd) and the bytes; an index of all
// ones with the count of stored blocks ends it. Numbers are little-endian.
// Under a key the whole file is enciphered as one stream (ImageFileWriter),
// after the blocks were compressed: ciphertext does not compress.
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

    // Under `key` the image is enciphered.
    static Result backup(const QString& device, const QString& imagePath, const Options& options,
        const std::atomic_bool& stop, const Progress& progress = {}, std::shared_ptr<const ObjectKey> key = {});
    // Writes the image over `device`, which must be unmounted and at least as
    // large as the imaged volume; the blocks not stored are zeroed. An
    // enciphered image needs `password`; without it, or with a wrong one,
    // nothing is written.
    static Result restore(const QString& imagePath, const QString& device, const std::atomic_bool& stop,
        const Progress& progress = {}, const QString& password = QString());
    // Why the image cannot be opened with `password` (missing, not an image
    // this engine reads, enciphered under another password); empty when it
    // can. Reads only the file's head.
    static QString openError(const QString& imagePath, const QString& password);
};

} // namespace NVB::Engine
