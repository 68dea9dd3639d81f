#include "packtrailer.h"

#include <QtEndian>

#include "chunking/chunkidentifier.h"

namespace NVB::Engine {

namespace {

const QByteArray Magic = QByteArrayLiteral("NVBPACK1");
constexpr int HashSize = 32;

void appendU32(QByteArray* out, quint32 value)
{
    char bytes[4];
    qToLittleEndian(value, bytes);
    out->append(bytes, 4);
}

void appendU64(QByteArray* out, quint64 value)
{
    char bytes[8];
    qToLittleEndian(value, bytes);
    out->append(bytes, 8);
}

quint32 u32At(const QByteArray& in, int at)
{
    return qFromLittleEndian<quint32>(in.constData() + at);
}

quint64 u64At(const QByteArray& in, int at)
{
    return qFromLittleEndian<quint64>(in.constData() + at);
}

} // namespace

QByteArray PackTrailer::serialize(const QVector<PackEntry>& entries)
{
    QByteArray out;
    out.reserve(4 + entries.size() * EntrySize + HashSize);
    appendU32(&out, quint32(entries.size()));
    for (const PackEntry& entry : entries) {
        out.append(entry.id.leftJustified(ChunkIdentifier::IdSize, '\0', true));
        appendU64(&out, quint64(entry.offset));
        appendU32(&out, quint32(entry.length));
        appendU32(&out, quint32(entry.rawLength));
    }
    out.append(ChunkIdentifier().id(out));
    return out;
}

QString PackTrailer::parse(const QByteArray& plain, qint64 bodySize, QVector<PackEntry>* entries)
{
    entries->clear();
    if (plain.size() < 4 + HashSize)
        return QStringLiteral("its trailer is too short");
    const qint64 count = u32At(plain, 0);
    if (plain.size() != 4 + count * EntrySize + HashSize)
        return QStringLiteral("its trailer announces %1 chunks but holds %2 bytes").arg(count).arg(plain.size());
    const QByteArray content = plain.left(plain.size() - HashSize);
    if (ChunkIdentifier().id(content) != plain.right(HashSize))
        return QStringLiteral("its trailer does not match its checksum");
    qint64 expectedOffset = 0;
    for (int i = 0; i < count; ++i) {
        const int at = 4 + i * EntrySize;
        PackEntry entry;
        entry.id = plain.mid(at, ChunkIdentifier::IdSize);
        entry.offset = qint64(u64At(plain, at + 32));
        entry.length = u32At(plain, at + 40);
        entry.rawLength = u32At(plain, at + 44);
        // Chunks lie back to back from the start; anything else means the
        // trailer belongs to another pack or was forged.
        if (entry.offset != expectedOffset || entry.length > MaximumChunkLength || entry.rawLength > MaximumChunkLength
            || entry.offset + entry.length > bodySize) {
            entries->clear();
            return QStringLiteral("its trailer places chunk %1 outside the pack").arg(i);
        }
        expectedOffset += entry.length;
        entries->append(entry);
    }
    if (expectedOffset != bodySize) {
        entries->clear();
        return QStringLiteral("its chunks cover %1 of its %2 data bytes").arg(expectedOffset).arg(bodySize);
    }
    return {};
}

QByteArray PackTrailer::footer(quint32 trailerLength)
{
    QByteArray out;
    appendU32(&out, trailerLength);
    appendU32(&out, Version);
    out.append(Magic);
    return out;
}

QString PackTrailer::parseFooter(const QByteArray& footer, quint32* trailerLength)
{
    if (footer.size() != FooterSize || footer.right(Magic.size()) != Magic)
        return QStringLiteral("it does not end like a pack (truncated or not a pack)");
    const quint32 version = u32At(footer, 4);
    if (version != Version)
        return QStringLiteral("its format version %1 is not one this engine reads").arg(version);
    *trailerLength = u32At(footer, 0);
    return {};
}

} // namespace NVB::Engine
