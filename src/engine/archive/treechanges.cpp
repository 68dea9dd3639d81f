#include "treechanges.h"

namespace NVB::Engine {

void TreeChanges::between(QHash<QString, TreeEntry>* previous, const QVector<TreeEntry>& entries, const QString& tree,
    QList<StoredContent>* added, QStringList* removed)
{
    // The store keeps a row for as long as its entry stays the same, so an
    // unchanged entry is not named at all: its row, and the tree it names as
    // the place its data is described, carry over. An unchanged run then
    // writes nothing per file.
    for (const TreeEntry& entry : entries) {
        const auto before = previous->constFind(entry.item.path);
        if (before != previous->cend()) {
            const bool same = sameEntry(*before, entry);
            previous->erase(before);
            if (same)
                continue;
        }
        StoredContent item = entry.item;
        // A legacy reader that took the tree for a file's data would fail
        // on its checksum.
        if (item.type == StoredContent::File)
            item.object = tree;
        added->append(item);
    }
    removed->reserve(removed->size() + previous->size());
    for (auto it = previous->cbegin(); it != previous->cend(); ++it)
        removed->append(it.key());
    previous->clear();
}

bool TreeChanges::sameEntry(const TreeEntry& a, const TreeEntry& b)
{
    // The rest of a record is the same for every entry of the new format.
    const StoredContent& x = a.item;
    const StoredContent& y = b.item;
    return x.type == y.type && x.modifiedNs == y.modifiedNs && x.mode == y.mode && x.owner == y.owner
        && x.group == y.group && x.linkTarget == y.linkTarget && x.size == y.size && x.changedNs == y.changedNs
        && x.inode == y.inode && x.checksum == y.checksum && a.chunks == b.chunks;
}

} // namespace NVB::Engine
