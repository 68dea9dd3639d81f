#include "archiverecordsfuzz.h"

#include <cstdlib>

#include "repository/identitytransform.h"
#include "repository/pointtree.h"
#include "repository/repository.h"
#include "repository/treepart.h"
#include "repository/zstdtransform.h"
#include "storage/memorydriver.h"

using namespace NVB::Engine;

void ArchiveRecordsFuzz::feedTree(const QByteArray& input)
{
    // The version 2 root and part records too: what a parser accepts reads
    // back the same once written again.
    TreeRoot root;
    if (TreePart::parseRoot(input, &root).isEmpty()) {
        TreeRoot again;
        if (!TreePart::parseRoot(TreePart::rootData(root), &again).isEmpty()
            || TreePart::rootData(again) != TreePart::rootData(root))
            std::abort();
    }
    QVector<TreeEntry> entries;
    if (!input.isEmpty() && TreePart::parse(input.mid(1), quint8(input.at(0)), &entries).isEmpty()) {
        QByteArray written;
        for (const TreeEntry& entry : std::as_const(entries))
            TreePart::append(&written, entry);
        QVector<TreeEntry> again;
        QByteArray rewritten;
        if (!TreePart::parse(written, entries.size(), &again).isEmpty())
            std::abort();
        for (const TreeEntry& entry : std::as_const(again))
            TreePart::append(&rewritten, entry);
        if (rewritten != written)
            std::abort();
    }
    PointTree tree;
    if (!PointTree::parse(input, &tree).isEmpty())
        return;
    PointTree again;
    if (!PointTree::parse(tree.serialize(), &again).isEmpty() || again.entries.size() != tree.entries.size()
        || again.serialize() != tree.serialize())
        std::abort();
}

void ArchiveRecordsFuzz::feedIndex(const QByteArray& input)
{
    if (input.isEmpty())
        return;
    MemoryDriver driver;
    const QString key = QStringLiteral("r/generations/g/index/000001-run");
    if (!driver.write(key, input.mid(1)).ok())
        std::abort();
    const Repository repository(&driver, QStringLiteral("r"));
    QVector<PackSummary> packs;
    const QString error = (input.at(0) & 1) ? repository.readIndexObject(key, ZstdTransform(), &packs)
                                            : repository.readIndexObject(key, IdentityTransform(), &packs);
    // What it accepts must be usable: entries lie inside their packs.
    for (const PackSummary& pack : std::as_const(packs)) {
        for (const PackEntry& entry : pack.entries) {
            if (error.isEmpty() && (entry.offset < 0 || entry.length < 0 || entry.id.size() != 32))
                std::abort();
        }
    }
}
