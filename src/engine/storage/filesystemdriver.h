#pragma once

#include "storage/storagedriver.h"

namespace NVB::Engine {

// Objects as files below a root folder, key segments as subfolders. Writes go
// to a unique ".tmp-" file that is synced, renamed over the key and followed
// by a sync of the folder, so a crash leaves the old object or the new one and
// at worst a stray temporary file that listings skip. Every path is walked
// from the root with O_NOFOLLOW, so a link placed inside the storage can never
// lead a read or a write outside it. The root itself must exist: creating it
// silently could fill the mount point of an unmounted disk.
class FileSystemDriver : public StorageDriver
{
public:
    explicit FileSystemDriver(const QString& root);

    QString root() const { return m_root; }

    QString description() const override;
    StorageListing list(const QString& prefix) const override;
    StorageStat stat(const QString& key) const override;
    StorageRead read(const QString& key, qint64 offset = 0, qint64 length = -1) const override;
    StorageStatus write(const QString& key, const QByteArray& data) override;
    StorageStatus remove(const QString& key) override;

private:
    class Descriptor;

    // Opens the folder holding `key`'s last segment; -1 with errno set when it
    // cannot, ENOENT when a folder is missing and `create` is false.
    int openParent(const QString& key, bool create, QString* leaf) const;
    int openFolder(const QStringList& segments, bool create) const;
    bool listFolder(int folder, const QString& path, StorageListing* listing) const;
    QString rootError() const;
    QString failure(const QString& action, const QString& key) const;
    StorageRead readOnce(const QString& key, qint64 offset, qint64 length) const;
    StorageStatus writeOnce(const QString& key, const QByteArray& data);

    QString m_root;
};

} // namespace NVB::Engine
