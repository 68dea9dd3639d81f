#pragma once

#include "storage/storageresult.h"

namespace NVB::Engine {

// The one interface between the repository and wherever its objects live.
// Keys are relative paths of '/'-separated segments ("data/3f/3f2a..."); no
// segment is empty, "." or "..", none starts with ".tmp-" (reserved for a
// driver's unfinished writes), and no key starts with '/'. Implementations are
// safe to call from several threads at once.
class StorageDriver
{
public:
    virtual ~StorageDriver() = default;

    // A short description for messages ("folder /mnt/backup").
    virtual QString description() const = 0;
    // Every object under a folder prefix ("" for all, "data" for data/...),
    // at any depth; a missing prefix is an empty listing, not an error.
    virtual StorageListing list(const QString& prefix) const = 0;
    // A missing object is ok() with exists false.
    virtual StorageStat stat(const QString& key) const = 0;
    // Reads `length` bytes from `offset` (-1: to the end). A range that runs
    // past the end is cut at the end and an offset at or past the end reads
    // nothing, so callers compare the length they got with the one they need.
    // A missing object is an error.
    virtual StorageRead read(const QString& key, qint64 offset = 0, qint64 length = -1) const = 0;
    // Stores a whole object, replacing any earlier one; readers see the old
    // or the new content, never a mix, and on success the object is durable.
    virtual StorageStatus write(const QString& key, const QByteArray& data) = 0;
    // Removing a missing object succeeds: retention and clean-up may repeat
    // after a crash.
    virtual StorageStatus remove(const QString& key) = 0;

    // Why a key is refused, or an empty string when it is fine.
    static QString keyError(const QString& key);
    // As keyError() for list prefixes, which may also be empty.
    static QString prefixError(const QString& prefix);
};

} // namespace NVB::Engine
