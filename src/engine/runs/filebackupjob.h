#pragma once

#include <atomic>
#include <functional>

#include <QDateTime>
#include <QElapsedTimer>
#include <QHash>
#include <QList>
#include <QString>
#include <QUuid>

#include "fileselection.h"
#include "runprogress.h"
#include "store/runfilerecord.h"
#include "store/storedcontent.h"

namespace NVB::Engine {

// One run of a file backup plan to a folder: walks the plan's sources, copies
// what changed since the previous restore point below `storageRoot` and
// answers the new restore point's content. Runs on a worker thread; touches
// nothing but the file system and its own members.
class FileBackupJob
{
public:
    struct Spec
    {
        QUuid planId;
        QString planName;
        QString storageRoot;  // the account's folder
        QString objectPrefix; // where this run's copies go, relative to storageRoot
        // The previous restore point's content by path; a file whose size and
        // time match keeps its copy.
        QHash<QString, StoredContent> previous;
        QDateTime reBackupModifiedSince;
        bool backupEmptyFolders = false;
        bool followFileSymlinks = false;
    };

    struct Result
    {
        int planResult = 0;
        QString message;
        QList<StoredContent> content;
        QList<RunFileRecord> files;
        RunProgress totals;
    };

    using ProgressHandler = std::function<void(const RunProgress&)>;

    FileBackupJob(Spec spec, FileSelection selection);

    // Blocks until the run ends or `stop` turns true. Progress is reported at
    // most ten times a second.
    Result run(const std::atomic_bool& stop, const ProgressHandler& progress);

private:
    void walk(const QString& folder, const std::atomic_bool& stop);
    void takeFolder(const QString& path, qint64 mtimeSeconds);
    void takeFile(const QString& path, qint64 size, qint64 mtimeSeconds);
    void report(bool force);
    void fail(const QString& path, const QString& message);

    Spec m_spec;
    FileSelection m_selection;
    Result m_result;
    ProgressHandler m_progress;
    QElapsedTimer m_clock;
    qint64 m_lastReport = -1;
};

} // namespace NVB::Engine
