#pragma once

#include <functional>

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QVector>

#include "repository/pointtree.h"
#include "store/storedcontent.h"

namespace NVB::Engine {

class PointTreeReader;
class PointTreeWriter;

// Builds a new-format point's tree as the walk hands over its items and
// compares it, one folder's listing at a time, with the previous point's
// tree: the store keeps a row for as long as its entry stays the same, so
// only new or changed entries are recorded (a file's object is the new
// tree's key, where its data is described) and paths no longer held are
// named. Neither tree is held whole: the new one goes to its writer part by
// part, the previous one is read a listing at a time.
class TreeMerge
{
public:
    // Takes a batch of recorded entries off the run's hands (staged in the
    // store); false keeps them in memory instead.
    using Stage = std::function<bool(const QList<StoredContent>&)>;
    // Told each listing of the previous tree as it is read, before its
    // entries are compared.
    using ListingSeen = std::function<void(const QVector<TreeEntry>&)>;

    // `previous` may be null: everything is new.
    TreeMerge(PointTreeReader* previous, PointTreeWriter* writer, const QString& treeKey, Stage stage);

    // The previous point's entry at `path`, or null; valid until the next
    // call. Folders waiting above the path are written first.
    const TreeEntry* previous(const QString& path);
    void setListingSeen(ListingSeen seen) { m_listingSeen = std::move(seen); }
    // A folder is written at once when kept even if empty, otherwise once
    // something below it is; leaving it unwritten drops it.
    void enterFolder(const TreeEntry& folder, bool keepEmpty);
    void leaveFolder(const QString& path);
    void add(const TreeEntry& entry);
    // Ends the last listing and names what the previous point held in
    // folders this one does not list; false when the tree cannot be written.
    bool finish();

    // Why the tree cannot be written or the previous one read; the first.
    QString error() const { return m_error; }
    bool writeFailed() const { return m_writeFailed; }
    // A listing of the previous tree could not be read: entries compared
    // as unchanged before that went unrecorded, so the point must be
    // recorded whole (recordAll()).
    bool previousLost() const { return m_previousLost; }
    // Records every entry of a tree, for a point told whole.
    bool recordAll(PointTreeReader* tree);

    QList<StoredContent> takeAdded() { return std::move(m_added); }
    QStringList takeRemoved() { return std::move(m_removed); }
    qint64 stagedCount() const { return m_staged; }

    // What a tree keeps of an entry is equal.
    static bool sameEntry(const TreeEntry& a, const TreeEntry& b);

private:
    void flushPending();
    void write(const TreeEntry& entry);
    void openListing(const QString& folder);
    void closeListing();
    void record(const TreeEntry& entry);
    void flushBatch();
    void previousFailed(const QString& error);

    PointTreeReader* m_previous;
    PointTreeWriter* m_writer;
    QString m_treeKey;
    Stage m_stage;
    ListingSeen m_listingSeen;
    QVector<TreeEntry> m_pending; // folders nothing below was taken from yet
    QString m_folder;
    bool m_open = false;
    QHash<QString, TreeEntry> m_before; // the open folder's previous listing
    QSet<QString> m_listed; // folders this tree has listed
    QList<StoredContent> m_added;
    QList<StoredContent> m_batch;
    QStringList m_removed;
    qint64 m_staged = 0;
    QString m_error;
    bool m_writeFailed = false;
    bool m_previousLost = false;
};

} // namespace NVB::Engine
