#pragma once

#include <memory>

#include <QSet>
#include <QString>
#include <QStringList>
#include <QUuid>
#include <QVector>

#include "chunking/chunkidentifier.h"
#include "repository/packresult.h"

namespace NVB::Engine {

class ChunkIndexStore;
class ChunkTransform;
class Repository;
class StorageDriver;
class StoreDatabase;

// The generation a new-format run writes into: opened (begun when new),
// tidied after a crashed run, and its index known through the store's cache
// (or, without a store, read into memory), so the run asks only whether a
// chunk is stored already.
class ArchiveSession
{
public:
    struct Setup
    {
        QString storageRoot;
        QString repositoryRoot;
        QUuid generation;
        bool newGeneration = true;
        bool compress = false;
        QString password;
        int keyBytes = 32;
        StorageDriver* driver = nullptr; // null: a File System driver on storageRoot
        QString storeFile; // empty: the index is read into memory
    };

    explicit ArchiveSession(Setup setup);
    ~ArchiveSession();

    // Why the generation cannot be used, or an empty string. A generation
    // whose record is gone is begun again (newGeneration() turns true).
    QString open();

    bool newGeneration() const { return m_setup.newGeneration; }
    StorageDriver* driver() const { return m_driver; }
    Repository* repository() const { return m_repository.get(); }
    const ChunkTransform* transform() const { return m_transform.get(); }
    const ChunkIdentifier& identifier() const { return m_identifier; }
    quint64 chunkerSeed() const { return m_chunkerSeed; }
    QStringList removedPacks() const { return m_removedPacks; }

    bool isKnown(const QByteArray& id) const;
    // Asks the cache about `ids` at once (a folder's unchanged files, about
    // to be checked one by one); isKnown() then answers for them from
    // memory until the next call.
    void prefetch(const QVector<QByteArray>& ids);
    void remember(const QByteArray& id) { m_known.insert(id); }
    // Tells the cache of a run's index object, once written.
    void cacheIndex(const QString& key, const QVector<PackSummary>& packs);

private:
    // Brings the store's cache up to the storage's index objects; false
    // (and no cache used) when the store fails.
    bool syncCache();

    Setup m_setup;
    std::unique_ptr<StorageDriver> m_ownDriver;
    StorageDriver* m_driver = nullptr;
    std::unique_ptr<Repository> m_repository;
    std::unique_ptr<ChunkTransform> m_transform;
    ChunkIdentifier m_identifier;
    quint64 m_chunkerSeed = 0;
    std::unique_ptr<StoreDatabase> m_database;
    std::unique_ptr<ChunkIndexStore> m_cache;
    // Ids this run has added, and without a cache those of the generation's
    // index too.
    QSet<QByteArray> m_known;
    QStringList m_removedPacks;
    // The last prefetch: the ids asked, and those the cache holds.
    QSet<QByteArray> m_asked;
    QSet<QByteArray> m_cached;
};

} // namespace NVB::Engine
