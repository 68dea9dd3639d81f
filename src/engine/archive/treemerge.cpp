#include "treemerge.h"

#include "repository/pointtreereader.h"
#include "repository/pointtreewriter.h"
#include "repository/treepart.h"

namespace NVB::Engine {

namespace {

// Large enough that staging costs one transaction per several thousand
// entries, small enough to hold.
constexpr int BatchSize = 4096;

} // namespace

TreeMerge::TreeMerge(PointTreeReader* previous, PointTreeWriter* writer, const QString& treeKey, Stage stage)
    : m_previous(previous)
    , m_writer(writer)
    , m_treeKey(treeKey)
    , m_stage(std::move(stage))
{ }

const TreeEntry* TreeMerge::previous(const QString& path)
{
    flushPending();
    if (!m_open || !TreePart::inFolder(path, m_folder)) {
        StoredContent file;
        file.path = path;
        openListing(TreePart::groupOf(file));
    }
    const auto found = m_before.constFind(path);
    return found == m_before.cend() ? nullptr : &found.value();
}

void TreeMerge::enterFolder(const TreeEntry& folder, bool keepEmpty)
{
    if (keepEmpty) {
        flushPending();
        write(folder);
    } else {
        m_pending.append(folder);
    }
}

void TreeMerge::leaveFolder(const QString& path)
{
    if (!m_pending.isEmpty() && m_pending.constLast().item.path == path)
        m_pending.removeLast();
}

void TreeMerge::add(const TreeEntry& entry)
{
    flushPending();
    write(entry);
}

void TreeMerge::flushPending()
{
    for (const TreeEntry& folder : std::as_const(m_pending))
        write(folder);
    m_pending.clear();
}

void TreeMerge::write(const TreeEntry& entry)
{
    if (!m_open || !TreePart::inGroup(entry.item, m_folder))
        openListing(TreePart::groupOf(entry.item));
    const auto before = m_before.find(entry.item.path);
    bool same = false;
    if (before != m_before.end()) {
        same = sameEntry(*before, entry);
        m_before.erase(before);
    }
    if (!same)
        record(entry);
    const StorageStatus written = m_writer->add(entry);
    if (!written.ok() && m_error.isEmpty()) {
        m_error = written.error;
        m_writeFailed = true;
    }
}

void TreeMerge::openListing(const QString& folder)
{
    closeListing();
    m_folder = folder;
    m_open = true;
    // A folder listed a second time (two chosen files of one folder, apart)
    // compares with nothing: what it holds is recorded again, which is
    // correct whatever the first listing named as removed.
    if (!m_previous || m_previousLost || m_listed.contains(folder))
        return;
    QString error;
    const QVector<TreeEntry> listing = m_previous->listing(folder, &error);
    if (!error.isEmpty()) {
        previousFailed(error);
        return;
    }
    if (m_listingSeen)
        m_listingSeen(listing);
    m_before.reserve(listing.size());
    for (const TreeEntry& entry : listing)
        m_before.insert(entry.item.path, entry);
}

void TreeMerge::closeListing()
{
    if (!m_open)
        return;
    for (auto it = m_before.cbegin(); it != m_before.cend(); ++it)
        m_removed.append(it.key());
    m_before.clear();
    m_listed.insert(m_folder);
    m_open = false;
}

void TreeMerge::previousFailed(const QString& error)
{
    m_previousLost = true;
    m_before.clear();
    if (m_error.isEmpty())
        m_error = error;
}

void TreeMerge::record(const TreeEntry& entry)
{
    StoredContent item = entry.item;
    // A legacy reader that took the tree for a file's data would fail on
    // its checksum.
    if (item.type == StoredContent::File)
        item.object = m_treeKey;
    if (!m_stage) {
        m_added.append(item);
        return;
    }
    m_batch.append(item);
    if (m_batch.size() >= BatchSize)
        flushBatch();
}

void TreeMerge::flushBatch()
{
    if (m_batch.isEmpty())
        return;
    if (m_stage(m_batch))
        m_staged += m_batch.size();
    else
        m_added += m_batch;
    m_batch.clear();
}

bool TreeMerge::finish()
{
    m_pending.clear(); // folders left with nothing taken below them
    closeListing();
    if (m_previous && !m_previousLost) {
        const QStringList folders = m_previous->folders();
        for (const QString& folder : folders) {
            if (m_listed.contains(folder))
                continue;
            QString error;
            const QVector<TreeEntry> gone = m_previous->listing(folder, &error);
            if (!error.isEmpty()) {
                previousFailed(error);
                break;
            }
            for (const TreeEntry& entry : gone)
                m_removed.append(entry.item.path);
        }
    }
    flushBatch();
    return !m_writeFailed;
}

bool TreeMerge::recordAll(PointTreeReader* tree)
{
    m_added.clear();
    m_batch.clear();
    m_removed.clear();
    const QString error = tree->forEach([this](const TreeEntry& entry) {
        record(entry);
        return true;
    });
    flushBatch();
    return error.isEmpty();
}

bool TreeMerge::sameEntry(const TreeEntry& a, const TreeEntry& b)
{
    // The rest of a record is the same for every entry of the new format.
    const StoredContent& x = a.item;
    const StoredContent& y = b.item;
    return x.type == y.type && x.modifiedNs == y.modifiedNs && x.mode == y.mode && x.owner == y.owner
        && x.group == y.group && x.linkTarget == y.linkTarget && x.size == y.size && x.changedNs == y.changedNs
        && x.inode == y.inode && x.checksum == y.checksum && a.chunks == b.chunks;
}

} // namespace NVB::Engine
