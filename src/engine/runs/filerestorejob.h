#pragma once

#include <atomic>
#include <functional>

#include <QElapsedTimer>
#include <QList>
#include <QString>
#include <QStringList>
#include <QUuid>

#include "foldercache.h"
#include "folderhandle.h"
#include "runprogress.h"
#include "store/runfilerecord.h"
#include "store/storedcontent.h"

namespace NVB::Engine {

// One run of a file restore plan: copies the chosen objects of a restore point
// from the account's folder back to their original place or below a
// destination folder. Runs on a worker thread.
class FileRestoreJob
{
public:
    struct Parameters
    {
        QUuid planId;
        QString planName;
        QString storageRoot;
        QList<StoredContent> content; // the whole restore point
        QStringList items; // source paths to restore; empty: all
        QString destination; // empty: the original location
        bool skipExistingFiles = false;
        bool onlyNewFiles = false; // leave a target that is as new or newer
        QString password; // opens enciphered objects
    };

    struct Result
    {
        int planResult = 0;
        QString message;
        QList<RunFileRecord> files;
        RunProgress totals;
    };

    using ProgressHandler = std::function<void(const RunProgress&)>;

    explicit FileRestoreJob(Parameters parameters);

    Result run(const std::atomic_bool& stop, const ProgressHandler& progress);

    // Where a source path lands: below the destination with its whole path,
    // or in place when there is no destination.
    static QString targetPath(const QString& destination, const QString& sourcePath);

private:
    bool isChosen(const QString& path) const;
    // The wrong-password message when the password does not open the
    // point's enciphered copies; empty otherwise.
    QString wrongPassword() const;
    void restoreFile(const StoredContent& file, const std::atomic_bool& stop);
    void restoreLink(const StoredContent& link);
    // Owner (when running as root), mode and modification time of a
    // restored item: `name` in `folder`, or with `name` null `folder` itself.
    static void applyOwnership(int folder, const char* name, const StoredContent& item);
    void record(const StoredContent& file, int operation, const QString& message);

    Parameters m_parameters;
    FolderHandle m_storage;
    FolderHandle m_target;
    FolderCache m_objectFolder; // of the last object read
    FolderCache m_targetFolder; // of the last file written
    Result m_result;
    QElapsedTimer m_clock;
};

} // namespace NVB::Engine
