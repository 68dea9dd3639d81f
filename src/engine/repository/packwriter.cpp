#include "packwriter.h"

#include <utility>

#include "chunking/chunkidentifier.h"
#include "repository/chunktransform.h"
#include "repository/packtrailer.h"
#include "storage/storagedriver.h"

namespace NVB::Engine {

PackWriter::PackWriter(StorageDriver* driver, const ChunkTransform* transform, const QString& folder, qint64 targetSize)
    : m_driver(driver)
    , m_transform(transform)
    , m_folder(folder)
    , m_targetSize(qMax<qint64>(1, targetSize))
{ }

StorageStatus PackWriter::add(const QByteArray& id, const QByteArray& raw)
{
    if (id.size() != ChunkIdentifier::IdSize)
        return {QStringLiteral("A chunk id must be %1 bytes, not %2.").arg(ChunkIdentifier::IdSize).arg(id.size())};
    if (raw.size() > PackTrailer::MaximumChunkLength)
        return {QStringLiteral("A chunk of %1 bytes is larger than a pack may hold.").arg(raw.size())};
    const TransformResult encoded = m_transform->encode(raw);
    if (!encoded.ok())
        return {QStringLiteral("Cannot encode a chunk with %1: %2").arg(m_transform->name(), encoded.error)};
    if (encoded.data.size() > PackTrailer::MaximumChunkLength)
        return {
            QStringLiteral("An encoded chunk of %1 bytes is larger than a pack may hold.").arg(encoded.data.size())};
    m_entries.append({id, m_body.size(), encoded.data.size(), raw.size()});
    m_body.append(encoded.data);
    if (m_body.size() >= m_targetSize)
        return flush();
    return {};
}

StorageStatus PackWriter::flush()
{
    if (m_entries.isEmpty())
        return {};
    const TransformResult trailer = m_transform->encode(PackTrailer::serialize(m_entries));
    if (!trailer.ok())
        return {QStringLiteral("Cannot encode a pack trailer with %1: %2").arg(m_transform->name(), trailer.error)};
    // The trailer goes onto the pending body itself (no copy of 8 MiB) and
    // comes off again when the write fails, so a retry starts clean.
    const int bodySize = m_body.size();
    m_body.append(trailer.data);
    m_body.append(PackTrailer::footer(quint32(trailer.data.size())));
    const QString name = QString::fromLatin1(ChunkIdentifier().id(m_body).toHex());
    const QString key = QStringLiteral("%1%2/%3").arg(
        m_folder.isEmpty() ? QString() : m_folder + QLatin1Char('/'), name.left(2), name);
    const StorageStatus status = name.isEmpty()
        ? StorageStatus {QStringLiteral("Cannot name a pack: the hash function failed.")}
        : m_driver->write(key, m_body);
    if (!status.ok()) {
        m_body.truncate(bodySize);
        return status;
    }
    m_written.append({key, m_body.size(), m_entries});
    m_entries.clear();
    m_body.clear();
    return status;
}

QVector<PackSummary> PackWriter::takeWrittenPacks()
{
    return std::exchange(m_written, {});
}

} // namespace NVB::Engine
