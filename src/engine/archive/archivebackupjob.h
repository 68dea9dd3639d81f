#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <sys/stat.h>

#include <QDateTime>
#include <QList>
#include <QString>
#include <QUuid>

#include "progress/progresspacer.h"
#include "progress/transferscan.h"
#include "repository/packresult.h"
#include "repository/pointtree.h"
#include "runs/fileselection.h"
#include "runs/runprogress.h"
#include "storage/storageresult.h"
#include "store/runfilerecord.h"
#include "store/storedcontent.h"
#include "walk/sourcewalk.h"

namespace NVB::Engine {

class ArchiveSession;
class ChunkPacker;
class PointTreeReader;
class PointTreeWriter;
class StorageDriver;
class TreeMerge;

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
        // The files and bytes the plan's last run took; set, progress is
        // told against them instead of a count of its own (TransferScan).
        std::optional<TransferScan::Totals> expectedTotals;
        // Tests give a driver of their own; otherwise a File System driver
        // on storageRoot.
        StorageDriver* driver = nullptr;
        qint64 packSize = 0; // 0: the pack writer's default
        // The engine's store, whose chunk index cache spares reading every
        // index object; empty: the index is read into memory.
        QString storeFile;
        // Set: new and changed entries leave the run in batches through it
        // (ContentStaging) instead of being held until the end.
        std::function<bool(const QList<StoredContent>&)> stageContent;
    };

    struct Result
    {
        int planResult = 0;
        QString message;
        // The new point as its changes since the previous one (see
        // ContentChanges): new or changed entries (those not staged), paths
        // no longer held, and whether the previous point could not be read.
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
    // SourceWalk::Visitor
    bool stopped() const override;
    void failed(const QString& path, const QString& message) override;
    void file(const QString& path, const struct stat& info, bool followedLink) override;
    void link(const QString& path, const struct stat& info, const QString& target) override;
    void enterFolder(const QString& path, const struct stat& info, bool isRoot) override;
    void leaveFolder(const QString& path, const struct stat& info, bool isRoot) override;
    void addEntry(const TreeEntry& entry);
    void takeFile(const QString& path, const struct stat& seen, bool followLink, const std::atomic_bool& stop);
    bool finish(const std::atomic_bool& stop);
    // Packs, index and tree made durable in that order; false when the
    // storage refused one.
    bool commit();
    void discard();
    void fail(const QString& path, const QString& message, bool counted = false);
    void failStorage(const QString& message);
    void report(bool force);

    Parameters m_parameters;
    FileSelection m_selection;
    SourceWalk m_walk;
    const std::atomic_bool* m_stop = nullptr;
    std::unique_ptr<TransferScan> m_scan;
    std::unique_ptr<ArchiveSession> m_session;
    std::unique_ptr<ChunkPacker> m_packer;
    QString m_runName;
    QString m_treeKey;
    std::unique_ptr<PointTreeReader> m_previous;
    std::unique_ptr<PointTreeWriter> m_tree;
    std::unique_ptr<TreeMerge> m_merge;
    QVector<PackSummary> m_written; // packs to remove if the run is abandoned
    bool m_stopped = false;
    QString m_storageError;
    Result m_result;
    ProgressPacer m_pacer;
};

} // namespace NVB::Engine
