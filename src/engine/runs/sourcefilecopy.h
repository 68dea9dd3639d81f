#pragma once

#include <atomic>
#include <memory>
#include <optional>
#include <sys/stat.h>

#include <QByteArray>
#include <QString>

#include "blocks/blockmap.h"
#include "encryption/objectkey.h"
#include "filecopier.h"
#include "objectencoding.h"

namespace NVB::Engine {

class FolderHandle;

// Copies one changed source file of a backup run to its object: bracketed by
// `fstat`, read once more when it changed under the first read, and stored
// as a block increment against its full version when that version has a
// map (whole again, with a new map, when too much of it changed).
class SourceFileCopy
{
public:
    struct Options
    {
        bool followLink = false;
        bool skipInUseFiles = false;
        ObjectEncoding encoding = ObjectEncoding::Plain;
        std::shared_ptr<const ObjectKey> key;
        quint32 blockSize = 0; // 0: no block level
        int fullAbovePercent = -1;
        std::optional<BlockMap> base; // the full version's map, when there is one
    };

    enum class Status {
        Copied, // see `copied` for a stop or a failed copy
        Unreadable, // the source cannot be opened or is no regular file
        InUse, // left out: in use, or changed under both reads
    };

    struct Result
    {
        Status status = Status::Copied;
        QString error;
        FileCopier::Result copied;
        struct stat source = {}; // as the kept read began
        bool unsteady = false; // kept although it changed while read
        // An increment: the whole file's size and SHA-256.
        bool increment = false;
        qint64 fileSize = 0;
        QByteArray fileChecksum;
        // A full version under block level: its block hashes.
        std::optional<QByteArray> blockHashes;
    };

    // `path` names the source in messages.
    static Result copy(const QByteArray& source, const QString& path, const FolderHandle& target,
        const QByteArray& name, Options options, const std::atomic_bool& stop);
};

} // namespace NVB::Engine
