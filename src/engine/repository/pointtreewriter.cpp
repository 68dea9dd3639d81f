#include "pointtreewriter.h"

#include <QCryptographicHash>
#include <QUuid>

#include "chunktransform.h"
#include "repository.h"
#include "storage/storagedriver.h"

namespace NVB::Engine {

PointTreeWriter::PointTreeWriter(
    Repository* repository, const ChunkTransform* transform, const PointTree& header, qint64 partSize)
    : m_repository(repository)
    , m_transform(transform)
    , m_partSize(partSize)
{
    m_root.generation = header.generation;
    m_root.sequence = header.sequence;
    m_root.startUtc = header.startUtc;
    m_root.planName = header.planName;
    m_root.writer = QUuid::createUuid().toString(QUuid::WithoutBraces);
}

StorageStatus PointTreeWriter::add(const TreeEntry& entry)
{
    if (!m_started || !TreePart::inGroup(entry.item, m_lastFolder)) {
        m_lastFolder = TreePart::groupOf(entry.item);
        m_root.listings.append(TreeRoot::Listing {m_lastFolder, m_root.parts.size(), m_partCount});
        m_started = true;
    }
    TreePart::append(&m_part, entry);
    ++m_partCount;
    ++m_count;
    if (m_part.size() >= m_partSize)
        return flushPart();
    return {};
}

StorageStatus PointTreeWriter::flushPart()
{
    if (m_partCount == 0)
        return {};
    const TransformResult encoded = m_transform->encode(m_part);
    if (!encoded.ok())
        return {QStringLiteral("Cannot encode a tree part: %1").arg(encoded.error)};
    const QString key = m_repository->partKey(m_root.generation, m_root.sequence, m_root.writer, m_root.parts.size());
    const StorageStatus written = m_repository->driver()->write(key, encoded.data);
    if (!written.ok())
        return written;
    m_written.append(key);
    m_bytesWritten += encoded.data.size();
    m_root.parts.append(TreeRoot::Part {m_partCount, QCryptographicHash::hash(m_part, QCryptographicHash::Sha256)});
    m_part.clear();
    m_partCount = 0;
    return {};
}

StorageStatus PointTreeWriter::finish()
{
    StorageStatus status = flushPart();
    if (!status.ok())
        return status;
    const TransformResult encoded = m_transform->encode(TreePart::rootData(m_root));
    if (!encoded.ok())
        return {QStringLiteral("Cannot encode a tree: %1").arg(encoded.error)};
    status = m_repository->driver()->write(m_repository->treeKey(m_root.generation, m_root.sequence), encoded.data);
    if (!status.ok())
        return status;
    m_bytesWritten += encoded.data.size();
    // The root no longer names an earlier writer's parts (a crashed run's,
    // or those of the tree this one replaced); a failed removal leaves
    // space, never a missing part, and the next tidy tries again.
    m_repository->removeStaleParts(m_root.generation, m_root.sequence, m_root.writer);
    return {};
}

void PointTreeWriter::abandon()
{
    for (const QString& key : std::as_const(m_written))
        m_repository->driver()->remove(key);
    m_written.clear();
}

} // namespace NVB::Engine
