#pragma once

#include <atomic>
#include <functional>
#include <memory>

#include <QElapsedTimer>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QUuid>

#include "chunking/chunkidentifier.h"
#include "repository/repository.h"
#include "runs/foldercache.h"
#include "runs/folderhandle.h"
#include "runs/runprogress.h"
#include "store/runfilerecord.h"

namespace NVB::Engine {

class ChunkTransform;
class PackReader;
class PackReaderQueue;
class StorageDriver;

// Restores chosen items of a new-format restore point, or with `verifyOnly`
// reads every chunk of the point and checks it without writing anything.
// Reads the point's tree and its generation's index, then only the chunk
// ranges the chosen files need, file by file in the order their data lies in
// the packs. Every chunk is checked against its id and every file against
// its SHA-256, so damage costs exactly the files whose chunks it touches,
// each failed with a message that names the file and the pack.
class ArchiveRestoreJob
{
public:
    struct Parameters
    {
        QUuid planId;
        QString planName;
        QString storageRoot;
        QString repositoryRoot;
        QUuid generation;
        int sequence = 0;
        QStringList items; // empty: all
        QString destination; // empty: the original location
        bool skipExistingFiles = false;
        bool onlyNewFiles = false;
        bool verifyOnly = false;
        QString password; // of an enciphered generation
        StorageDriver* driver = nullptr; // tests; otherwise File System
    };

    struct Result
    {
        int planResult = 0;
        QString message;
        QList<RunFileRecord> files;
        RunProgress totals;
        QStringList damagedPacks; // a verify's findings
        QStringList removedPacks; // a verify's tidying
    };

    using ProgressHandler = std::function<void(const RunProgress&)>;

    explicit ArchiveRestoreJob(Parameters parameters);
    ~ArchiveRestoreJob();

    Result run(const std::atomic_bool& stop, const ProgressHandler& progress);

private:
    QString load();
    bool isChosen(const QString& path) const;
    void restoreFile(const TreeEntry& entry, const std::atomic_bool& stop);
    // Why an existing file at `name` in `folder` stays as it is (the plan's
    // skip options), or empty when the restore replaces it.
    QString keptReason(int folder, const QByteArray& name, const StoredContent& file) const;
    // Starts reading the chunks of the files a restore will write, in their
    // order, ahead of the writing.
    void startReading(const QList<const TreeEntry*>& files);
    // The next chunk of the file being restored: from the read-ahead when the
    // file is in it, else read here.
    ChunkData takeChunk(const ChunkLocation& location);
    void restoreLink(const StoredContent& link);
    // The temporary file's data, checked against the recorded checksum.
    QString writeData(int fd, const TreeEntry& entry, const std::atomic_bool& stop);
    static void applyOwnership(int folder, const char* name, const StoredContent& item);
    void record(const StoredContent& item, int operation, const QString& message);
    void failed(const StoredContent& item, const QString& message);

    Parameters m_parameters;
    std::unique_ptr<StorageDriver> m_ownDriver;
    StorageDriver* m_driver = nullptr;
    std::unique_ptr<Repository> m_repository;
    std::unique_ptr<ChunkTransform> m_transform;
    std::unique_ptr<PackReader> m_reader;
    std::unique_ptr<PackReaderQueue> m_queue;
    QSet<const TreeEntry*> m_planned; // the files in the read-ahead
    int m_owed = 0; // chunks of the current file still in the read-ahead
    FolderCache m_parentFolder; // of the last file written
    ChunkIdentifier m_identifier;
    PointTree m_tree;
    ChunkIndex m_index;
    FolderHandle m_target;
    Result m_result;
    QElapsedTimer m_clock;
};

} // namespace NVB::Engine
