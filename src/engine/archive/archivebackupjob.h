#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <sys/stat.h>
#include <vector>

#include <QDateTime>
#include <QElapsedTimer>
#include <QFuture>
#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <QThreadPool>
#include <QUuid>

#include "chunking/chunker.h"
#include "chunking/chunkidentifier.h"
#include "progress/transferscan.h"
#include "repository/pointtree.h"
#include "runs/fileselection.h"
#include "runs/runprogress.h"
#include "storage/storageresult.h"
#include "store/runfilerecord.h"
#include "store/storedcontent.h"
#include "walk/sourcewalk.h"

namespace NVB::Engine {

class ChunkIndexStore;
class ChunkTransform;
class PackWriter;
class StoreDatabase;
class Repository;
class StorageDriver;

// One run of a new-format file plan: walks the sources, cuts every changed
// file into chunks, stores the chunks its generation does not hold yet in
// packs, then the run's index and the restore point's tree. Files whose
// size, times and inode match the previous point keep its chunk lists
// unread. Runs on a worker thread and touches only the file system and the
// storage.
class ArchiveBackupJob : private SourceWalk::Visitor
{
public:
    struct Parameters
    {
        QUuid planId;
        QString planName;
        QString storageRoot; // the account's folder
        QString repositoryRoot; // the plan's repository, a key below storageRoot
        QUuid generation;
        int sequence = 1;
        bool newGeneration = true;
        int previousSequence = 0; // the point whose unchanged files are kept; 0: none
        QDateTime startUtc;
        QDateTime reBackupModifiedSince;
        bool backupEmptyFolders = false;
        bool compress = false;
        // Set: a new generation is enciphered under this password with a key
        // of `keyBytes` (16, 24 or 32); an existing one must open with it.
        QString password;
        int keyBytes = 32;
        bool followFileSymlinks = false;
        bool skipSymlinks = false;
        QStringList neverTaken;
        std::optional<bool> oneFileSystem;
        // Tests give a driver of their own; otherwise a File System driver
        // on storageRoot.
        StorageDriver* driver = nullptr;
        qint64 packSize = 0; // 0: the pack writer's default
        // The engine's store, whose chunk index cache spares reading every
        // index object; empty: the index is read into memory.
        QString storeFile;
    };

    struct Result
    {
        int planResult = 0;
        QString message;
        // The new point as its changes since the previous one (see
        // ContentChanges): new or changed entries, paths no longer held, and
        // whether the previous point could not be read at all.
        QList<StoredContent> content;
        QStringList removed;
        bool replacesAll = false;
        QList<RunFileRecord> files;
        RunProgress totals;
        // What the run read from the sources, what of it the generation did
        // not hold yet, and what it wrote to the storage (packs, index, tree).
        qint64 bytesRead = 0;
        qint64 bytesNew = 0;
        qint64 bytesStored = 0;
        int unsteadyCount = 0;
        QStringList removedPacks; // a crashed run's leftovers, swept first
    };

    using ProgressHandler = std::function<void(const RunProgress&)>;

    ArchiveBackupJob(Parameters parameters, FileSelection selection);
    ~ArchiveBackupJob();

    Result run(const std::atomic_bool& stop, const ProgressHandler& progress);

private:
    bool prepare();
    // Brings the store's cache up to the storage's index objects; false
    // (and no cache used) when the store fails.
    bool syncCache();
    bool isKnown(const QByteArray& id);
    // SourceWalk::Visitor
    bool stopped() const override;
    void failed(const QString& path, const QString& message) override;
    void file(const QString& path, const struct stat& info, bool followedLink) override;
    void link(const QString& path, const struct stat& info, const QString& target) override;
    void enterFolder(const QString& path, const struct stat& info, bool isRoot) override;
    void leaveFolder(const QString& path, const struct stat& info, bool isRoot) override;
    void takeItem(const QString& path, int type, const struct stat& info, const QString& linkTarget = {});
    void takeFile(const QString& path, const struct stat& seen, bool followLink, const std::atomic_bool& stop);
    // Reads and chunks one open file; false when stopped or failed.
    bool chunkFile(int fd, TreeEntry* entry, const std::atomic_bool& stop, QString* error);
    bool storeChunk(const char* data, qint64 size, TreeEntry* entry);
    // Waits for the chunk being encoded and packed; false after a storage
    // error.
    bool settle();
    bool finish(const std::atomic_bool& stop);
    void fail(const QString& path, const QString& message, bool counted = false);
    void failStorage(const QString& message);
    void report(bool force);

    Parameters m_parameters;
    FileSelection m_selection;
    SourceWalk m_walk;
    const std::atomic_bool* m_stop = nullptr;
    std::unique_ptr<TransferScan> m_scan;
    std::unique_ptr<StorageDriver> m_ownDriver;
    StorageDriver* m_driver = nullptr;
    std::unique_ptr<Repository> m_repository;
    std::unique_ptr<ChunkTransform> m_transform;
    std::unique_ptr<PackWriter> m_writer;
    // Encoding and pack writes (with their syncs) run on a thread of their
    // own, one chunk at a time, while the next chunk is read and hashed. A
    // pool of its own: the shared one runs the plans themselves.
    QThreadPool m_packing;
    QFuture<StorageStatus> m_pending;
    std::unique_ptr<StoreDatabase> m_database;
    std::unique_ptr<ChunkIndexStore> m_cache;
    ChunkIdentifier m_identifier;
    Chunker m_chunker;
    QString m_runName;
    // Ids this run has added, and without a cache those of the generation's
    // index too.
    QSet<QByteArray> m_known;
    QHash<QString, TreeEntry> m_previous;
    PointTree m_tree;
    std::vector<char> m_block; // one read
    QByteArray m_buffer; // the unfinished chunk and the last read
    bool m_stopped = false;
    QString m_storageError;
    Result m_result;
    ProgressHandler m_progress;
    QElapsedTimer m_clock;
    qint64 m_lastReport = -1;
};

} // namespace NVB::Engine
