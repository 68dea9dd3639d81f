#include "archiverecordsfuzz.h"

#include <cstdlib>

#include "repository/identitytransform.h"
#include "repository/pointtree.h"
#include "repository/repository.h"
#include "repository/zstdtransform.h"
#include "storage/memorydriver.h"

using namespace NVB::Engine;

void ArchiveRecordsFuzz::feedTree(const QByteArray& input)
{
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
