#include "archivesession.h"

#include "encryption/objectkey.h"
#include "repository/chunktransform.h"
#include "repository/generationkey.h"
#include "repository/identitytransform.h"
#include "repository/repository.h"
#include "repository/zstdtransform.h"
#include "storage/filesystemdriver.h"
#include "store/chunkindexstore.h"
#include "store/storedatabase.h"

namespace NVB::Engine {

ArchiveSession::ArchiveSession(Setup setup)
    : m_setup(std::move(setup))
{ }

ArchiveSession::~ArchiveSession() = default;

QString ArchiveSession::open()
{
    m_driver = m_setup.driver;
    if (!m_driver) {
        m_ownDriver = std::make_unique<FileSystemDriver>(m_setup.storageRoot);
        m_driver = m_ownDriver.get();
    }
    m_repository = std::make_unique<Repository>(m_driver, m_setup.repositoryRoot);
    const QString transformName = m_setup.compress ? ZstdTransform().name() : IdentityTransform().name();
    QString error;
    if (!m_setup.newGeneration) {
        // A generation whose record is gone from the storage (removed, or a
        // storage started afresh) is begun again under its id: its old points
        // cannot restore anyway, and refusing would block every later run.
        const StorageStat record = m_driver->stat(m_repository->generationKey(m_setup.generation));
        if (record.ok() && !record.exists)
            m_setup.newGeneration = true;
    }
    if (m_setup.newGeneration) {
        std::shared_ptr<const ObjectKey> key;
        if (!m_setup.password.isEmpty()) {
            key = GenerationKey::create(m_setup.password, m_setup.keyBytes);
            if (!key)
                error = QStringLiteral("the encryption key cannot be made");
        }
        if (error.isEmpty())
            error = m_repository->startGeneration(m_setup.generation, transformName, key.get()).error;
    }
    if (error.isEmpty()) {
        OpenedGeneration opened = m_repository->openGeneration(m_setup.generation, m_setup.password);
        error = opened.error;
        m_transform = std::move(opened.transform);
        m_identifier = opened.identifier;
        m_chunkerSeed = opened.chunkerSeed;
    }
    if (!error.isEmpty() || m_setup.newGeneration)
        return error;
    // A crashed or stopped run's packs go first; a lost index comes back.
    if (!m_setup.storeFile.isEmpty() && syncCache()) {
        const QSet<QString> named = m_cache->packs(m_setup.generation);
        const Repository::Tidy tidy = m_repository->tidy(m_setup.generation, *m_transform, m_identifier, &named);
        m_removedPacks = tidy.removed;
        error = tidy.error;
        if (error.isEmpty() && !tidy.adopted.isEmpty() && !syncCache())
            error = QStringLiteral("the rebuilt index cannot be cached");
        return error;
    }
    const Repository::Tidy tidy = m_repository->tidy(m_setup.generation, *m_transform, m_identifier);
    m_removedPacks = tidy.removed;
    if (!tidy.error.isEmpty())
        return tidy.error;
    ChunkIndex index;
    error = m_repository->loadIndex(m_setup.generation, *m_transform, &index);
    m_known.reserve(index.size());
    for (auto it = index.cbegin(); it != index.cend(); ++it)
        m_known.insert(it.key());
    return error;
}

bool ArchiveSession::syncCache()
{
    // Half a cache would let chunks be stored twice or, worse, be taken as
    // stored: on any failure the run goes on without one.
    const auto drop = [this] {
        m_cache.reset();
        m_database.reset();
        return false;
    };
    if (!m_cache) {
        m_database = std::make_unique<StoreDatabase>();
        if (!m_database->open(m_setup.storeFile))
            return drop();
        m_cache = std::make_unique<ChunkIndexStore>(*m_database);
    }
    const QUuid& generation = m_setup.generation;
    QString error;
    const QStringList keys = m_repository->indexKeys(generation, &error);
    if (!error.isEmpty())
        return drop();
    QSet<QString> cached = m_cache->objects(generation);
    const QSet<QString> stored(keys.cbegin(), keys.cend());
    if (!stored.contains(cached)) {
        // An index object the cache knows is gone from the storage: the
        // cache no longer describes it and is read again from scratch.
        if (!m_cache->forget(generation))
            return drop();
        cached.clear();
    }
    for (const QString& key : keys) {
        if (cached.contains(key))
            continue;
        QVector<PackSummary> packs;
        if (!m_repository->readIndexObject(key, *m_transform, &packs).isEmpty()
            || !m_cache->add(generation, key, packs)) {
            m_cache->forget(generation);
            return drop();
        }
    }
    return true;
}

bool ArchiveSession::isKnown(const QByteArray& id) const
{
    if (m_known.contains(id))
        return true;
    if (!m_cache)
        return false;
    // The cache does not change during a run (this run's own chunks are in
    // m_known), so a prefetched answer stays true until the commit.
    if (m_asked.contains(id))
        return m_cached.contains(id);
    return m_cache->contains(m_setup.generation, id);
}

void ArchiveSession::prefetch(const QVector<QByteArray>& ids)
{
    m_asked.clear();
    m_cached.clear();
    if (!m_cache || ids.isEmpty())
        return;
    QSet<QByteArray> found;
    if (!m_cache->containing(m_setup.generation, ids, &found))
        return; // each id is asked on its own again
    m_asked = QSet<QByteArray>(ids.cbegin(), ids.cend());
    m_cached = std::move(found);
}

void ArchiveSession::cacheIndex(const QString& key, const QVector<PackSummary>& packs)
{
    m_asked.clear();
    m_cached.clear();
    if (m_cache && !m_cache->add(m_setup.generation, key, packs))
        m_cache->forget(m_setup.generation); // the next run reads the storage's index again
}

} // namespace NVB::Engine
