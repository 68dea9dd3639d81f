#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <sys/stat.h>
#include <vector>

#include <QDateTime>
#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <QUuid>

#include "blocks/blockbase.h"
#include "blocks/blockmap.h"
#include "encryption/objectkey.h"
#include "fileselection.h"
#include "foldercache.h"
#include "folderhandle.h"
#include "objectencoding.h"
#include "progress/progresspacer.h"
#include "progress/transferscan.h"
#include "runprogress.h"
#include "store/runfilerecord.h"
#include "store/storedcontent.h"
#include "walk/sourcewalk.h"

namespace NVB::Engine {

// One run of a file backup plan to a folder: walks the plan's sources, copies
// what changed since the previous restore point below `storageRoot` and
// answers the new restore point's content. Runs on a worker thread; touches
// nothing but the file system and its own members.
class FileBackupJob : private SourceWalk::Visitor
{
public:
    struct Parameters
    {
        QUuid planId;
        QString planName;
        QString storageRoot; // the account's folder
        QString objectPrefix; // this run's own folder, relative to storageRoot; must not exist yet
        // The previous restore point, read one folder at a time so that a
        // run's memory does not grow with the tree: what it holds directly
        // below a folder (nullopt: that could not be read), and every folder
        // it holds entries in. A file whose size, times and inode match keeps
        // its copy. Unset: there is no previous point.
        std::function<std::optional<QList<StoredContent>>(const QString& folder)> previousChildren;
        QStringList previousParents;
        // The full consistency check: the previous point's copies that this
        // run does not reuse are looked up as the walk passes them, so that
        // the check after the run need not read the previous point again.
        bool checkPrevious = false;
        QDateTime reBackupModifiedSince;
        bool backupEmptyFolders = false;
        bool compress = false; // new copies are zstd objects
        // Set: new copies are enciphered with this key.
        std::shared_ptr<const ObjectKey> key;
        bool followFileSymlinks = false;
        bool skipSymlinks = false; // links are left out altogether
        // Files another process writes or locks are left out, with a warning;
        // so is a file that changes under both reads.
        bool skipInUseFiles = false;
        // Folders never taken, whatever the selection says: the storage and
        // the engine's own data.
        QStringList neverTaken;
        // Do not descend into another file system than the root's. Unset:
        // only for the root "/", where crossing would take /proc, /sys and
        // every mounted drive.
        std::optional<bool> oneFileSystem;
        // The files and bytes the plan's last run took; set, progress is
        // told against them instead of a count of its own (TransferScan).
        std::optional<TransferScan::Totals> expectedTotals;
        // Block level: a changed file whose full version has a block map
        // stores only the blocks that differ from it; a file without one is
        // stored whole, with a map. 0: changed files are stored whole.
        quint32 blockSize = 0;
        // The share of a file, in percent, that may differ before its full
        // version is stored again; -1: any.
        int fullAbovePercent = -1;
        BlockBase::MapLookup blockMap;
        // Set: new and changed entries go here in batches while the run
        // walks (false: they could not be kept, and the run fails) instead
        // of all into Result::content.
        std::function<bool(const QList<StoredContent>&)> stageContent;
    };

    struct Result
    {
        int planResult = 0;
        QString message;
        // The new point as its changes since the previous one: new or
        // changed entries (every entry without a previous point), paths it
        // no longer holds, and folders none of whose previous entries it
        // holds (see ContentChanges).
        QList<StoredContent> content;
        QStringList removed;
        QStringList emptiedFolders;
        QList<RunFileRecord> files;
        RunProgress totals;
        // Files kept although they changed while they were read.
        int unsteadyCount = 0;
        // Block level: the maps of the full versions this run stored.
        QList<BlockMap> blockMaps;
        // Earlier copies found whole as they were reused, as keys of
        // ConsistencyCheck::checkedKey; 8 bytes a file, unsorted.
        std::vector<quint64> checkedObjects;
        // With `checkPrevious`: what was found wrong with the previous
        // point's copies, and whether every one of them was looked at (not
        // when a folder of it could not be read or was never reached).
        QStringList previousProblems;
        bool previousChecked = false;
    };

    using ProgressHandler = std::function<void(const RunProgress&)>;

    FileBackupJob(Parameters parameters, FileSelection selection);

    // Blocks until the run ends or `stop` turns true. Progress is reported at
    // most ten times a second.
    Result run(const std::atomic_bool& stop, const ProgressHandler& progress);

private:
    // The previous point's entries of one folder, by path.
    using PreviousEntries = QHash<QString, StoredContent>;

    // SourceWalk::Visitor
    bool stopped() const override;
    void failed(const QString& path, const QString& message) override;
    void file(const QString& path, const struct stat& info, bool followedLink) override;
    void link(const QString& path, const struct stat& info, const QString& target) override;
    void beginRoot(const QString& root) override;
    void enterFolder(const QString& path, const struct stat& info, bool isRoot) override;
    void leaveFolder(const QString& path, const struct stat& info, bool isRoot) override;
    void folderOpened(const QString& folder) override;
    void folderClosed(const QString& folder) override;

    // The previous point's entries of the folder being read.
    PreviousEntries& currentPrevious();
    PreviousEntries previousBelow(const QString& folder);
    // Counts `item` into the new point; records it unless the previous
    // point holds the same.
    void keep(const StoredContent& item, PreviousEntries& previous);
    void dropUnseen(const PreviousEntries& previous);
    void takeFolder(const QString& path, const struct stat& info, PreviousEntries& previous);
    void takeFile(const QString& path, const struct stat& info, bool followLink, const std::atomic_bool& stop,
        PreviousEntries& previous);
    bool reusable(const StoredContent& previous, const StoredContent& now);
    void checkPrevious(const StoredContent& previous);
    void report(bool force);
    // `counted`: the file was already counted as scanned.
    // How new copies are kept: compressed, enciphered, both or neither.
    ObjectEncoding encoding() const;
    RunFileRecord fileRecord(const QString& path, int operation) const;
    void fail(const QString& path, const QString& message, bool counted = false);
    void skipInUse(const QString& path);
    void failStorage(const QString& path, const QString& message);
    void finishResult(const std::atomic_bool& stop);

    Parameters m_parameters;
    FileSelection m_selection;
    SourceWalk m_walk;
    const std::atomic_bool* m_stop = nullptr;
    std::unique_ptr<TransferScan> m_scan;
    // The previous point's entries of the roots' parents, and of every
    // folder being walked, innermost last; what was kept before each.
    std::map<QString, PreviousEntries> m_rootParents;
    PreviousEntries* m_rootPrevious = nullptr;
    std::vector<PreviousEntries> m_previousStack;
    std::vector<qint64> m_keptBefore;
    FolderHandle m_storage;
    FolderHandle m_runFolder;
    FolderCache m_objectFolder; // of the last reused copy, below m_storage
    FolderCache m_targetFolder; // of the last copy, below m_runFolder
    bool m_stopped = false; // by the user, or by a storage error
    QString m_storageError;
    Result m_result;
    QSet<QString> m_unvisitedParents;
    bool m_previousUnread = false; // a folder of the previous point could not be read
    qint64 m_kept = 0;
    ProgressPacer m_pacer;
};

} // namespace NVB::Engine
