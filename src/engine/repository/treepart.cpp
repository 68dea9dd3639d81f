#include "treepart.h"

#include <cstring>

#include <QtEndian>

#include "chunking/chunkidentifier.h"

namespace NVB::Engine {

namespace {

const char RootMagic[] = "NVBTREE2";
constexpr int RootMagicSize = 8;
constexpr quint32 RootVersion = 2;

template<typename T> void put(QByteArray* out, T value)
{
    char bytes[sizeof(T)];
    qToLittleEndian(value, bytes);
    out->append(bytes, int(sizeof(T)));
}

void putText(QByteArray* out, const QString& text)
{
    const QByteArray utf8 = text.toUtf8();
    put<quint32>(out, quint32(utf8.size()));
    out->append(utf8);
}

// Reads forward through a part; any read past its end marks it damaged and
// yields zeros, so a caller checks `ok` once per entry.
class Cursor
{
public:
    explicit Cursor(const QByteArray& data)
        : m_at(data.constData())
        , m_end(data.constData() + data.size())
    { }

    template<typename T> T get()
    {
        if (m_end - m_at < qint64(sizeof(T))) {
            m_ok = false;
            m_at = m_end;
            return T(0);
        }
        const T value = qFromLittleEndian<T>(m_at);
        m_at += sizeof(T);
        return value;
    }

    const char* bytes(qint64 length)
    {
        if (length < 0 || m_end - m_at < length) {
            m_ok = false;
            m_at = m_end;
            return nullptr;
        }
        const char* start = m_at;
        m_at += length;
        return start;
    }

    QString text()
    {
        // Read through a byte array: no length can pass for "up to the
        // terminating zero".
        const quint32 length = get<quint32>();
        const char* start = bytes(length);
        return start ? QString::fromUtf8(QByteArray::fromRawData(start, int(length))) : QString();
    }

    bool ok() const { return m_ok; }
    bool atEnd() const { return m_at == m_end; }

private:
    const char* m_at;
    const char* m_end;
    bool m_ok = true;
};

} // namespace

void TreePart::append(QByteArray* part, const TreeEntry& entry)
{
    const StoredContent& item = entry.item;
    putText(part, item.path);
    put<quint8>(part, quint8(item.type));
    put<qint64>(part, item.modifiedNs);
    put<quint32>(part, quint32(item.mode));
    put<qint64>(part, item.owner);
    put<qint64>(part, item.group);
    if (item.type == StoredContent::Link)
        putText(part, item.linkTarget);
    if (item.type != StoredContent::File)
        return;
    put<qint64>(part, item.size);
    put<qint64>(part, item.changedNs);
    put<quint64>(part, item.inode);
    put<quint8>(part, quint8(item.checksum.size()));
    part->append(item.checksum);
    put<quint32>(part, quint32(entry.chunks.size()));
    for (const QByteArray& id : entry.chunks)
        part->append(id);
}

QString TreePart::parse(const QByteArray& data, int count, QVector<TreeEntry>* entries)
{
    Cursor cursor(data);
    // The count comes from the root: a damaged one must not reserve more
    // than the data could hold (every entry takes at least 34 bytes).
    entries->reserve(entries->size() + int(qMin<qint64>(count, data.size() / 34)));
    for (int n = 0; n < count; ++n) {
        TreeEntry entry;
        StoredContent& item = entry.item;
        item.path = cursor.text();
        item.type = cursor.get<quint8>();
        if (!cursor.ok() || !item.path.startsWith(QLatin1Char('/'))
            || (item.type != StoredContent::Folder && item.type != StoredContent::File
                && item.type != StoredContent::Link))
            return QStringLiteral("an item has no absolute path or an unknown type");
        item.modifiedNs = cursor.get<qint64>();
        item.modifiedUtc = QDateTime::fromMSecsSinceEpoch(item.modifiedNs / 1000000, Qt::UTC);
        item.mode = cursor.get<quint32>();
        item.owner = cursor.get<qint64>();
        item.group = cursor.get<qint64>();
        if (item.type == StoredContent::Link)
            item.linkTarget = cursor.text();
        if (item.type == StoredContent::File) {
            item.size = cursor.get<qint64>();
            item.changedNs = cursor.get<qint64>();
            item.inode = cursor.get<quint64>();
            const quint8 checksumLength = cursor.get<quint8>();
            if (const char* checksum = cursor.bytes(checksumLength))
                item.checksum = QByteArray(checksum, checksumLength);
            const quint32 chunks = cursor.get<quint32>();
            const char* ids = cursor.bytes(qint64(chunks) * ChunkIdentifier::IdSize);
            if (ids) {
                entry.chunks.reserve(int(chunks));
                for (quint32 c = 0; c < chunks; ++c)
                    entry.chunks.append(QByteArray(ids + qint64(c) * ChunkIdentifier::IdSize, ChunkIdentifier::IdSize));
            }
        }
        if (!cursor.ok())
            return QStringLiteral("the figures of %1 are damaged").arg(item.path);
        entries->append(std::move(entry));
    }
    if (!cursor.atEnd())
        return QStringLiteral("it holds more than its %1 items").arg(count);
    return {};
}

QString TreePart::groupOf(const StoredContent& item)
{
    if (item.type == StoredContent::Folder)
        return item.path;
    const int slash = item.path.lastIndexOf(QLatin1Char('/'));
    return slash <= 0 ? QStringLiteral("/") : item.path.left(slash);
}

bool TreePart::inFolder(const QString& path, const QString& folder)
{
    const int slash = path.lastIndexOf(QLatin1Char('/'));
    return (slash <= 0 ? 1 : slash) == folder.size() && path.startsWith(folder);
}

bool TreePart::inGroup(const StoredContent& item, const QString& folder)
{
    return item.type == StoredContent::Folder ? item.path == folder : inFolder(item.path, folder);
}

QByteArray TreePart::rootData(const TreeRoot& root)
{
    QByteArray out(RootMagic, RootMagicSize);
    put<quint32>(&out, RootVersion);
    out.append(root.generation.toRfc4122());
    put<qint32>(&out, root.sequence);
    putText(&out, root.startUtc.toString(Qt::ISODateWithMs));
    putText(&out, root.planName);
    putText(&out, root.writer);
    put<quint32>(&out, quint32(root.parts.size()));
    for (const TreeRoot::Part& part : root.parts) {
        put<quint32>(&out, quint32(part.count));
        out.append(part.sha256);
    }
    put<quint32>(&out, quint32(root.listings.size()));
    for (const TreeRoot::Listing& listing : root.listings) {
        putText(&out, listing.folder);
        put<quint32>(&out, quint32(listing.part));
        put<quint32>(&out, quint32(listing.index));
    }
    return out;
}

bool TreePart::isRoot(const QByteArray& data)
{
    return data.startsWith(QByteArray::fromRawData(RootMagic, RootMagicSize));
}

QString TreePart::parseRoot(const QByteArray& data, TreeRoot* root)
{
    if (!isRoot(data))
        return QStringLiteral("it is not a tree root");
    Cursor cursor(data);
    cursor.bytes(RootMagicSize);
    const quint32 version = cursor.get<quint32>();
    if (version != RootVersion)
        return QStringLiteral("its version %1 is unknown").arg(version);
    const char* uuid = cursor.bytes(16);
    if (uuid)
        root->generation = QUuid::fromRfc4122(QByteArray::fromRawData(uuid, 16));
    root->sequence = cursor.get<qint32>();
    root->startUtc = QDateTime::fromString(cursor.text(), Qt::ISODateWithMs);
    root->planName = cursor.text();
    root->writer = cursor.text();
    const quint32 parts = cursor.get<quint32>();
    for (quint32 n = 0; n < parts && cursor.ok(); ++n) {
        TreeRoot::Part part;
        part.count = int(cursor.get<quint32>());
        if (const char* sha = cursor.bytes(32))
            part.sha256 = QByteArray(sha, 32);
        root->parts.append(part);
    }
    const quint32 listings = cursor.get<quint32>();
    for (quint32 n = 0; n < listings && cursor.ok(); ++n) {
        TreeRoot::Listing listing;
        listing.folder = cursor.text();
        listing.part = int(cursor.get<quint32>());
        listing.index = int(cursor.get<quint32>());
        if (listing.part < 0 || listing.part >= root->parts.size() || listing.index < 0
            || listing.index >= root->parts.at(listing.part).count)
            return QStringLiteral("its listing of %1 points outside its parts").arg(listing.folder);
        root->listings.append(listing);
    }
    if (!cursor.ok() || !cursor.atEnd())
        return QStringLiteral("it is cut short or too long");
    return {};
}

} // namespace NVB::Engine
