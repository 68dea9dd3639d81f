#include "pointtree.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "chunking/chunkidentifier.h"

namespace NVB::Engine {

namespace {

// Large integers go as text: JSON numbers are doubles, and inodes and
// nanosecond times need all 64 bits.
QString number(qint64 value)
{
    return QString::number(value);
}

qint64 integer(const QJsonValue& value, bool* ok)
{
    bool good = false;
    const qint64 result = value.toString().toLongLong(&good);
    if (!good)
        *ok = false;
    return result;
}

} // namespace

QByteArray PointTree::serialize() const
{
    QJsonArray items;
    for (const TreeEntry& entry : entries) {
        const StoredContent& item = entry.item;
        QJsonObject object {{QStringLiteral("p"), item.path}, {QStringLiteral("t"), item.type},
            {QStringLiteral("m"), number(item.modifiedNs)}, {QStringLiteral("o"), int(item.mode)},
            {QStringLiteral("u"), number(item.owner)}, {QStringLiteral("g"), number(item.group)}};
        if (item.type == StoredContent::Link)
            object.insert(QStringLiteral("l"), item.linkTarget);
        if (item.type == StoredContent::File) {
            object.insert(QStringLiteral("s"), number(item.size));
            object.insert(QStringLiteral("c"), number(item.changedNs));
            object.insert(QStringLiteral("i"), number(qint64(item.inode)));
            object.insert(QStringLiteral("h"), QString::fromLatin1(item.checksum.toHex()));
            QJsonArray chunks;
            for (const QByteArray& id : entry.chunks)
                chunks.append(QString::fromLatin1(id.toHex()));
            object.insert(QStringLiteral("k"), chunks);
        }
        items.append(object);
    }
    const QJsonObject root {{QStringLiteral("version"), Version},
        {QStringLiteral("generation"), generation.toString(QUuid::WithoutBraces)},
        {QStringLiteral("sequence"), sequence}, {QStringLiteral("start"), startUtc.toString(Qt::ISODateWithMs)},
        {QStringLiteral("plan"), planName}, {QStringLiteral("items"), items}};
    return QJsonDocument(root).toJson(QJsonDocument::Compact);
}

QString PointTree::parse(const QByteArray& data, PointTree* tree)
{
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(data, &parseError);
    if (!document.isObject())
        return QStringLiteral("it is not a JSON object (%1)").arg(parseError.errorString());
    const QJsonObject root = document.object();
    if (root.value(QStringLiteral("version")).toInt() != Version)
        return QStringLiteral("its version %1 is unknown").arg(root.value(QStringLiteral("version")).toInt());
    tree->generation = QUuid(root.value(QStringLiteral("generation")).toString());
    tree->sequence = root.value(QStringLiteral("sequence")).toInt();
    tree->startUtc = QDateTime::fromString(root.value(QStringLiteral("start")).toString(), Qt::ISODateWithMs);
    tree->planName = root.value(QStringLiteral("plan")).toString();
    tree->entries.clear();
    const QJsonArray items = root.value(QStringLiteral("items")).toArray();
    tree->entries.reserve(items.size());
    bool ok = true;
    for (const QJsonValue& value : items) {
        const QJsonObject object = value.toObject();
        TreeEntry entry;
        StoredContent& item = entry.item;
        item.path = object.value(QStringLiteral("p")).toString();
        item.type = object.value(QStringLiteral("t")).toInt();
        if (!item.path.startsWith(QLatin1Char('/'))
            || (item.type != StoredContent::Folder && item.type != StoredContent::File
                && item.type != StoredContent::Link))
            return QStringLiteral("an item has no absolute path or an unknown type");
        item.modifiedNs = integer(object.value(QStringLiteral("m")), &ok);
        item.modifiedUtc = QDateTime::fromMSecsSinceEpoch(item.modifiedNs / 1000000, Qt::UTC);
        item.mode = uint(object.value(QStringLiteral("o")).toInt());
        item.owner = integer(object.value(QStringLiteral("u")), &ok);
        item.group = integer(object.value(QStringLiteral("g")), &ok);
        item.linkTarget = object.value(QStringLiteral("l")).toString();
        if (item.type == StoredContent::File) {
            item.size = integer(object.value(QStringLiteral("s")), &ok);
            item.changedNs = integer(object.value(QStringLiteral("c")), &ok);
            item.inode = quint64(integer(object.value(QStringLiteral("i")), &ok));
            item.checksum = QByteArray::fromHex(object.value(QStringLiteral("h")).toString().toLatin1());
            for (const QJsonValue& id : object.value(QStringLiteral("k")).toArray()) {
                entry.chunks.append(QByteArray::fromHex(id.toString().toLatin1()));
                if (entry.chunks.constLast().size() != ChunkIdentifier::IdSize)
                    return QStringLiteral("the chunk list of %1 is damaged").arg(item.path);
            }
        }
        if (!ok)
            return QStringLiteral("the figures of %1 are damaged").arg(item.path);
        tree->entries.append(entry);
    }
    return {};
}

} // namespace NVB::Engine
