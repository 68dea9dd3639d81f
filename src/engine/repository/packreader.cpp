#include "packreader.h"

#include <utility>

#include "chunking/chunkidentifier.h"
#include "repository/chunktransform.h"
#include "repository/packtrailer.h"
#include "storage/storagedriver.h"

namespace NVB::Engine {

namespace {

QString damaged(const QString& key, const QString& reason)
{
    return QStringLiteral("The pack \"%1\" is damaged: %2.").arg(key, reason);
}

QString shortId(const QByteArray& id)
{
    return QString::fromLatin1(id.toHex().left(16));
}

} // namespace

PackReader::PackReader(const StorageDriver* driver, const ChunkTransform* transform, const ChunkIdentifier* identifier)
    : m_driver(driver)
    , m_transform(transform)
    , m_identifier(identifier)
{ }

// `tail` holds at least the footer and ends where the pack ends.
QString PackReader::parseTrailer(
    const QString& key, const QByteArray& tail, qint64 size, QVector<PackEntry>* entries) const
{
    quint32 trailerLength = 0;
    QString reason = PackTrailer::parseFooter(tail.right(PackTrailer::FooterSize), &trailerLength);
    if (!reason.isEmpty())
        return damaged(key, reason);
    if (trailerLength > size - PackTrailer::FooterSize || qint64(trailerLength) > tail.size() - PackTrailer::FooterSize)
        return damaged(key, QStringLiteral("its trailer is longer than the pack (truncated)"));
    const QByteArray encoded = tail.mid(tail.size() - PackTrailer::FooterSize - int(trailerLength), int(trailerLength));
    const TransformResult plain = m_transform->decode(encoded);
    if (!plain.ok())
        return damaged(key, QStringLiteral("its trailer cannot be decoded (%1)").arg(plain.error));
    reason = PackTrailer::parse(plain.data, size - PackTrailer::FooterSize - trailerLength, entries);
    return reason.isEmpty() ? QString() : damaged(key, reason);
}

PackContents PackReader::readTrailer(const QString& key) const
{
    PackContents contents;
    const StorageStat stat = m_driver->stat(key);
    if (!stat.ok() || !stat.exists) {
        contents.error = stat.ok() ? QStringLiteral("The pack \"%1\" is missing.").arg(key) : stat.error;
        return contents;
    }
    contents.size = stat.size;
    if (stat.size < PackTrailer::FooterSize) {
        contents.error = damaged(key, QStringLiteral("it holds only %1 bytes").arg(stat.size));
        return contents;
    }
    const StorageRead footer = m_driver->read(key, stat.size - PackTrailer::FooterSize, PackTrailer::FooterSize);
    if (!footer.ok()) {
        contents.error = footer.error;
        return contents;
    }
    quint32 trailerLength = 0;
    const QString reason = PackTrailer::parseFooter(footer.data, &trailerLength);
    if (!reason.isEmpty() || trailerLength > stat.size - PackTrailer::FooterSize) {
        contents.error = parseTrailer(key, footer.data, stat.size, &contents.entries);
        return contents;
    }
    const qint64 tailLength = qint64(trailerLength) + PackTrailer::FooterSize;
    const StorageRead tail = m_driver->read(key, stat.size - tailLength, tailLength);
    if (!tail.ok())
        contents.error = tail.error;
    else
        contents.error = parseTrailer(key, tail.data, stat.size, &contents.entries);
    return contents;
}

ChunkData PackReader::decodeChunk(const QString& key, const PackEntry& entry, const QByteArray& stored) const
{
    ChunkData chunk;
    if (stored.size() != entry.length) {
        chunk.error = damaged(key,
            QStringLiteral("chunk %1 is cut short (%2 of %3 bytes)")
                .arg(shortId(entry.id))
                .arg(stored.size())
                .arg(entry.length));
        return chunk;
    }
    TransformResult plain = m_transform->decode(stored);
    if (!plain.ok()) {
        chunk.error
            = damaged(key, QStringLiteral("chunk %1 cannot be decoded (%2)").arg(shortId(entry.id), plain.error));
        return chunk;
    }
    if (plain.data.size() != entry.rawLength || m_identifier->id(plain.data) != entry.id) {
        chunk.error = damaged(key, QStringLiteral("chunk %1 does not match its id").arg(shortId(entry.id)));
        return chunk;
    }
    chunk.data = std::move(plain.data);
    return chunk;
}

ChunkData PackReader::readChunk(const QString& key, const PackEntry& entry) const
{
    const StorageRead stored = m_driver->read(key, entry.offset, entry.length);
    if (!stored.ok())
        return {stored.error, {}};
    return decodeChunk(key, entry, stored.data);
}

QVector<ChunkData> PackReader::readChunks(const QString& key, const QVector<PackEntry>& entries) const
{
    QVector<ChunkData> chunks;
    if (entries.isEmpty())
        return chunks;
    if (entries.size() == 1) {
        chunks.append(readChunk(key, entries.constFirst()));
        return chunks;
    }
    const qint64 start = entries.constFirst().offset;
    const PackEntry& last = entries.constLast();
    const StorageRead stored = m_driver->read(key, start, last.offset + last.length - start);
    for (const PackEntry& entry : entries) {
        if (!stored.ok())
            chunks.append({stored.error, {}});
        else
            chunks.append(decodeChunk(key, entry, stored.data.mid(int(entry.offset - start), int(entry.length))));
    }
    return chunks;
}

QStringList PackReader::verify(const QString& key) const
{
    const StorageRead pack = m_driver->read(key);
    if (!pack.ok())
        return {pack.error};
    QStringList problems;
    const QString name = key.section(QLatin1Char('/'), -1);
    if (QString::fromLatin1(ChunkIdentifier().id(pack.data).toHex()) != name)
        problems.append(damaged(key, QStringLiteral("its content does not match its name")));
    if (pack.data.size() < PackTrailer::FooterSize) {
        problems.append(damaged(key, QStringLiteral("it holds only %1 bytes").arg(pack.data.size())));
        return problems;
    }
    QVector<PackEntry> entries;
    const QString trailerError = parseTrailer(key, pack.data, pack.data.size(), &entries);
    if (!trailerError.isEmpty())
        problems.append(trailerError);
    for (const PackEntry& entry : qAsConst(entries)) {
        const ChunkData chunk = decodeChunk(key, entry, pack.data.mid(int(entry.offset), int(entry.length)));
        if (!chunk.ok())
            problems.append(chunk.error);
    }
    return problems;
}

} // namespace NVB::Engine
