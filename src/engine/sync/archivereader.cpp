#include "archivereader.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include "repository/chunktransform.h"
#include "runs/runpreparation.h"

namespace NVB::Engine {

ArchiveReader::ArchiveReader(
    const QString& accountFolder, const QString& prefix, const QUuid& planId, const QString& password)
    : m_accountFolder(QDir::cleanPath(accountFolder))
    , m_driver(m_accountFolder)
    , m_repository(&m_driver, RunPreparation::archiveRoot(prefix, planId))
    , m_password(password)
{ }

QList<QUuid> ArchiveReader::generations(QString* error)
{
    return m_repository.generations(error);
}

QList<int> ArchiveReader::points(const QUuid& generation, QString* error)
{
    return m_repository.points(generation, error);
}

const OpenedGeneration& ArchiveReader::opened(const QUuid& generation)
{
    auto& slot = m_opened[generation];
    if (!slot)
        slot = std::make_shared<OpenedGeneration>(m_repository.openGeneration(generation, m_password));
    return *slot;
}

bool ArchiveReader::isEnciphered(const QUuid& generation) const
{
    const StorageRead record = m_driver.read(m_repository.generationKey(generation));
    return record.ok() && QJsonDocument::fromJson(record.data).object().contains(QStringLiteral("key"));
}

qint64 ArchiveReader::pointSize(const QUuid& generation, int sequence, const ChunkTransform* transform)
{
    // The point's tree, the index objects its run wrote and the packs they
    // name: what the run stored.
    qint64 size = m_driver.stat(m_repository.treeKey(generation, sequence)).size;
    QString error;
    const QString runPrefix = QStringLiteral("/%1-").arg(sequence, 6, 10, QLatin1Char('0'));
    for (const QString& key : m_repository.indexKeys(generation, &error)) {
        if (!key.contains(runPrefix))
            continue;
        size += m_driver.stat(key).size;
        QVector<PackSummary> packs;
        if (transform && m_repository.readIndexObject(key, *transform, &packs).isEmpty()) {
            for (const PackSummary& pack : std::as_const(packs))
                size += pack.size;
        }
    }
    return size;
}

bool ArchiveReader::read(const QUuid& generation, int sequence, FoundPoint* point, QString* error)
{
    point->generation = generation;
    point->sequence = sequence;
    const OpenedGeneration& generationAccess = opened(generation);
    if (!generationAccess.transform) {
        if (!isEnciphered(generation)) {
            *error = generationAccess.error;
            return false;
        }
        // Enciphered under a password the store does not know: the point's
        // existence, start and size are all that can be told.
        const QFileInfo tree(m_accountFolder + QLatin1Char('/') + m_repository.treeKey(generation, sequence));
        point->startUtc = tree.lastModified().toUTC();
        point->sizeOnStorage = pointSize(generation, sequence, nullptr);
        point->encrypted = true;
        point->contentKnown = false;
        point->content.clear();
        return true;
    }
    const PointTree tree = m_repository.readTree(generation, sequence, *generationAccess.transform, error);
    if (!error->isEmpty())
        return false;
    if (m_planName.isEmpty())
        m_planName = tree.planName;
    point->startUtc = tree.startUtc.toUTC();
    point->sizeOnStorage = pointSize(generation, sequence, generationAccess.transform.get());
    point->encrypted = generationAccess.enciphered;
    point->contentKnown = true;
    point->content.clear();
    point->content.reserve(tree.entries.size());
    const QString treeKey = m_repository.treeKey(generation, sequence);
    for (const TreeEntry& entry : tree.entries) {
        StoredContent item = entry.item;
        // As a run records it: a file's object is the tree that describes
        // its chunks.
        if (item.type == StoredContent::File)
            item.object = treeKey;
        point->content.append(item);
    }
    return true;
}

} // namespace NVB::Engine
