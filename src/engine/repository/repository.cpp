#include "repository.h"

#include <QDataStream>
#include <QJsonDocument>
#include <QJsonObject>

#include "chunking/chunker.h"
#include "encryption/objectkey.h"
#include "repository/ciphertransform.h"
#include "repository/generationkey.h"
#include "repository/identitytransform.h"
#include "repository/packreader.h"
#include "repository/packtrailer.h"
#include "repository/pointtreereader.h"
#include "repository/pointtreewriter.h"
#include "repository/zstdtransform.h"
#include "storage/storagedriver.h"

namespace NVB::Engine {

namespace {

const QByteArray IndexMagic = QByteArrayLiteral("NVBINDX1");

QString noBraces(const QUuid& id)
{
    return id.toString(QUuid::WithoutBraces);
}

QString sequenceName(int sequence)
{
    return QStringLiteral("%1").arg(sequence, 6, 10, QLatin1Char('0'));
}

QString lastSegment(const QString& key)
{
    return key.mid(key.lastIndexOf(QLatin1Char('/')) + 1);
}

} // namespace

Repository::Repository(StorageDriver* driver, const QString& root)
    : m_driver(driver)
    , m_root(root)
{ }

std::unique_ptr<ChunkTransform> Repository::transform(const QString& name)
{
    if (name == IdentityTransform().name())
        return std::make_unique<IdentityTransform>();
    if (name == ZstdTransform().name())
        return std::make_unique<ZstdTransform>();
    return nullptr;
}

QString Repository::generationFolder(const QUuid& generation) const
{
    return QStringLiteral("%1/generations/%2").arg(m_root, noBraces(generation));
}

QString Repository::packFolder(const QUuid& generation) const
{
    return generationFolder(generation) + QStringLiteral("/packs");
}

QString Repository::generationKey(const QUuid& generation) const
{
    return generationFolder(generation) + QStringLiteral("/generation");
}

QString Repository::indexFolder(const QUuid& generation) const
{
    return generationFolder(generation) + QStringLiteral("/index");
}

QString Repository::treeKey(const QUuid& generation, int sequence) const
{
    return generationFolder(generation) + QStringLiteral("/points/") + sequenceName(sequence);
}

QString Repository::partsFolder(const QUuid& generation, int sequence) const
{
    return generationFolder(generation) + QStringLiteral("/parts/") + sequenceName(sequence);
}

QString Repository::partKey(const QUuid& generation, int sequence, const QString& writer, int index) const
{
    return QStringLiteral("%1/%2/%3").arg(partsFolder(generation, sequence), writer, sequenceName(index));
}

StorageStatus Repository::startGeneration(const QUuid& generation, const QString& transformName, const ObjectKey* key)
{
    const QString configKey = m_root + QStringLiteral("/config");
    const StorageStat config = m_driver->stat(configKey);
    if (!config.ok())
        return {config.error};
    if (!config.exists) {
        // Read by a new engine that knows nothing but the storage.
        const QJsonObject object {{QStringLiteral("format"), FormatVersion},
            {QStringLiteral("chunker"),
                QStringLiteral("fastcdc %1/%2/%3")
                    .arg(Chunker::MinimumSize)
                    .arg(Chunker::AverageSize)
                    .arg(Chunker::MaximumSize)},
            {QStringLiteral("chunkerSeed"), 0}, {QStringLiteral("chunkIds"), QStringLiteral("sha-256")}};
        const StorageStatus written = m_driver->write(configKey, QJsonDocument(object).toJson());
        if (!written.ok())
            return written;
    }
    const QString recordKey = generationKey(generation);
    const StorageStat existing = m_driver->stat(recordKey);
    if (!existing.ok() || existing.exists)
        return {existing.error};
    QJsonObject object {{QStringLiteral("transform"), transformName}};
    if (key) {
        object.insert(QStringLiteral("transform"),
            (transformName == IdentityTransform().name() ? QString() : transformName + QLatin1Char('+'))
                + GenerationKey::cipherName(key->key().size()));
        object.insert(QStringLiteral("key"), GenerationKey::describe(*key));
        object.insert(QStringLiteral("chunkIds"), QStringLiteral("hmac-sha-256"));
    }
    return m_driver->write(recordKey, QJsonDocument(object).toJson());
}

OpenedGeneration Repository::openGeneration(const QUuid& generation, const QString& password) const
{
    OpenedGeneration opened;
    const QString key = generationKey(generation);
    const StorageRead read = m_driver->read(key);
    if (!read.ok()) {
        opened.error = read.error;
        return opened;
    }
    const QJsonObject record = QJsonDocument::fromJson(read.data).object();
    const QString name = record.value(QStringLiteral("transform")).toString();
    // "<compression>+aes-<bits>-gcm", "aes-<bits>-gcm" or a compression alone.
    const int plus = name.indexOf(QLatin1Char('+'));
    const QString last = plus < 0 ? name : name.mid(plus + 1);
    const bool enciphered = last.startsWith(QLatin1String("aes-")) && record.contains(QStringLiteral("key"));
    if (!enciphered) {
        opened.transform = transform(name);
    } else {
        auto inner = transform(plus < 0 ? IdentityTransform().name() : name.left(plus));
        QString problem;
        auto secret = GenerationKey::open(record.value(QStringLiteral("key")).toObject(), password, &problem);
        if (!secret) {
            opened.error = problem;
            return opened;
        }
        if (inner && GenerationKey::cipherName(secret->key().size()) == last) {
            opened.identifier = ChunkIdentifier(GenerationKey::chunkIdKey(*secret));
            opened.chunkerSeed = GenerationKey::chunkerSeed(*secret);
            opened.enciphered = true;
            opened.transform = std::make_unique<CipherTransform>(std::move(inner), std::move(secret), password);
        }
    }
    if (!opened.transform)
        opened.error
            = QStringLiteral("The generation %1 uses the unknown transform \"%2\"").arg(noBraces(generation), name);
    return opened;
}

std::unique_ptr<ChunkTransform> Repository::generationTransform(
    const QUuid& generation, QString* error, const QString& password) const
{
    OpenedGeneration opened = openGeneration(generation, password);
    *error = opened.error;
    return std::move(opened.transform);
}

QList<QUuid> Repository::generations(QString* error) const
{
    const StorageListing listing = m_driver->list(m_root + QStringLiteral("/generations"));
    if (!listing.ok()) {
        *error = listing.error;
        return {};
    }
    QList<QUuid> result;
    for (const StorageObjectInfo& object : listing.objects) {
        if (lastSegment(object.key) != QLatin1String("generation"))
            continue;
        const QStringList parts = object.key.split(QLatin1Char('/'));
        const QUuid id(parts.value(parts.size() - 2));
        if (!id.isNull())
            result.append(id);
    }
    return result;
}

QList<int> Repository::points(const QUuid& generation, QString* error) const
{
    const StorageListing listing = m_driver->list(generationFolder(generation) + QStringLiteral("/points"));
    if (!listing.ok()) {
        *error = listing.error;
        return {};
    }
    QList<int> result;
    for (const StorageObjectInfo& object : listing.objects) {
        bool ok = false;
        const int sequence = lastSegment(object.key).toInt(&ok);
        if (ok)
            result.append(sequence);
    }
    return result;
}

StorageStatus Repository::removeGeneration(const QUuid& generation)
{
    const StorageListing listing = m_driver->list(generationFolder(generation));
    if (!listing.ok())
        return {listing.error};
    // Points first, so that a removal cut short never leaves a point whose
    // packs are gone; the generation record last, so a repeat finds the rest.
    QStringList keys;
    QString record;
    for (const StorageObjectInfo& object : listing.objects) {
        if (lastSegment(object.key) == QLatin1String("generation"))
            record = object.key;
        else if (object.key.contains(QLatin1String("/points/")))
            keys.prepend(object.key);
        else
            keys.append(object.key);
    }
    if (!record.isEmpty())
        keys.append(record);
    for (const QString& key : std::as_const(keys)) {
        const StorageStatus removed = m_driver->remove(key);
        if (!removed.ok())
            return removed;
    }
    return {};
}

StorageStatus Repository::writeIndex(const QUuid& generation, int sequence, const QString& run,
    const QVector<PackSummary>& packs, const ChunkTransform& transform)
{
    QByteArray plain;
    QDataStream stream(&plain, QIODevice::WriteOnly);
    stream.setByteOrder(QDataStream::LittleEndian);
    stream.writeRawData(IndexMagic.constData(), IndexMagic.size());
    stream << quint32(packs.size());
    for (const PackSummary& pack : packs) {
        const QByteArray key = pack.key.toUtf8();
        const QByteArray trailer = PackTrailer::serialize(pack.entries);
        const qint64 body
            = pack.entries.isEmpty() ? 0 : pack.entries.constLast().offset + pack.entries.constLast().length;
        stream << quint32(key.size());
        stream.writeRawData(key.constData(), key.size());
        stream << quint64(body) << quint32(trailer.size());
        stream.writeRawData(trailer.constData(), trailer.size());
    }
    const TransformResult encoded = transform.encode(plain);
    if (!encoded.ok())
        return {QStringLiteral("Cannot encode an index: %1").arg(encoded.error)};
    return m_driver->write(indexKey(generation, sequence, run), encoded.data);
}

QString Repository::indexKey(const QUuid& generation, int sequence, const QString& run) const
{
    return QStringLiteral("%1/%2-%3").arg(indexFolder(generation), sequenceName(sequence), run);
}

QStringList Repository::indexKeys(const QUuid& generation, QString* error) const
{
    const StorageListing listing = m_driver->list(indexFolder(generation));
    if (!listing.ok())
        *error = listing.error;
    QStringList keys;
    for (const StorageObjectInfo& object : listing.objects)
        keys.append(object.key);
    return keys;
}

QString Repository::readIndexObject(
    const QString& key, const ChunkTransform& transform, QVector<PackSummary>* packs) const
{
    const StorageRead read = m_driver->read(key);
    const TransformResult plain = read.ok() ? transform.decode(read.data) : TransformResult {read.error, {}};
    if (!plain.ok())
        return QStringLiteral("The index %1 cannot be read: %2").arg(key, plain.error);
    QDataStream stream(plain.data);
    stream.setByteOrder(QDataStream::LittleEndian);
    QByteArray magic(IndexMagic.size(), Qt::Uninitialized);
    quint32 count = 0;
    if (stream.readRawData(magic.data(), magic.size()) != magic.size() || magic != IndexMagic)
        return QStringLiteral("The index %1 is damaged").arg(key);
    stream >> count;
    for (quint32 n = 0; n < count && stream.status() == QDataStream::Ok; ++n) {
        quint32 keyLength = 0;
        quint32 trailerLength = 0;
        quint64 body = 0;
        stream >> keyLength;
        if (keyLength > 4096 || stream.status() != QDataStream::Ok)
            break;
        QByteArray name(int(keyLength), Qt::Uninitialized);
        stream.readRawData(name.data(), name.size());
        stream >> body >> trailerLength;
        if (trailerLength > quint32(plain.data.size()))
            break;
        QByteArray trailer(int(trailerLength), Qt::Uninitialized);
        if (stream.readRawData(trailer.data(), trailer.size()) != trailer.size())
            break;
        PackSummary pack;
        pack.key = QString::fromUtf8(name);
        const QString error = PackTrailer::parse(trailer, qint64(body), &pack.entries);
        if (!error.isEmpty())
            return QStringLiteral("The index %1 is damaged: %2").arg(key, error);
        packs->append(pack);
    }
    if (stream.status() != QDataStream::Ok || !stream.atEnd())
        return QStringLiteral("The index %1 is damaged").arg(key);
    return {};
}

QString Repository::loadIndex(
    const QUuid& generation, const ChunkTransform& transform, ChunkIndex* index, QSet<QString>* packs) const
{
    QString error;
    const QStringList keys = indexKeys(generation, &error);
    for (const QString& key : keys) {
        QVector<PackSummary> named;
        if (error.isEmpty())
            error = readIndexObject(key, transform, &named);
        for (const PackSummary& pack : std::as_const(named)) {
            if (packs)
                packs->insert(pack.key);
            for (const PackEntry& entry : pack.entries)
                index->insert(entry.id, {pack.key, entry});
        }
    }
    return error;
}

QString Repository::packSummaries(
    const QUuid& generation, const ChunkTransform& transform, QVector<PackSummary>* packs) const
{
    QString error;
    const QStringList keys = indexKeys(generation, &error);
    for (const QString& key : keys) {
        if (!error.isEmpty())
            break;
        error = readIndexObject(key, transform, packs);
    }
    return error;
}

StorageStatus Repository::writeTree(const PointTree& tree, const ChunkTransform& transform)
{
    PointTreeWriter writer(this, &transform, tree);
    for (const TreeEntry& entry : tree.entries) {
        const StorageStatus added = writer.add(entry);
        if (!added.ok()) {
            writer.abandon();
            return added;
        }
    }
    const StorageStatus finished = writer.finish();
    if (!finished.ok())
        writer.abandon();
    return finished;
}

PointTree Repository::readTree(
    const QUuid& generation, int sequence, const ChunkTransform& transform, QString* error) const
{
    PointTreeReader reader(this, &transform);
    QString problem = reader.open(generation, sequence);
    PointTree tree = reader.header();
    if (problem.isEmpty())
        problem = reader.forEach([&tree](const TreeEntry& entry) {
            tree.entries.append(entry);
            return true;
        });
    if (!problem.isEmpty()) {
        *error = problem;
        tree.entries.clear();
    }
    return tree;
}

StorageStatus Repository::removeTree(const QUuid& generation, int sequence)
{
    const StorageStatus removed = m_driver->remove(treeKey(generation, sequence));
    if (!removed.ok())
        return removed;
    const StorageListing parts = m_driver->list(partsFolder(generation, sequence));
    if (!parts.ok())
        return {parts.error};
    for (const StorageObjectInfo& object : parts.objects) {
        const StorageStatus gone = m_driver->remove(object.key);
        if (!gone.ok())
            return gone;
    }
    return {};
}

void Repository::removeStaleParts(const QUuid& generation, int sequence, const QString& writer)
{
    const QString own = partsFolder(generation, sequence) + QLatin1Char('/') + writer + QLatin1Char('/');
    const StorageListing parts = m_driver->list(partsFolder(generation, sequence));
    for (const StorageObjectInfo& object : parts.objects) {
        if (!object.key.startsWith(own))
            m_driver->remove(object.key);
    }
}

Repository::Tidy Repository::tidy(const QUuid& generation, const ChunkTransform& transform,
    const ChunkIdentifier& identifier, const QSet<QString>* cached)
{
    Tidy result;
    const StorageListing stored = m_driver->list(packFolder(generation));
    const StorageListing indexes = m_driver->list(indexFolder(generation));
    QString error;
    const QList<int> sequences = points(generation, &error);
    if (!stored.ok() || !indexes.ok() || !error.isEmpty()) {
        result.error = !stored.ok() ? stored.error : !indexes.ok() ? indexes.error : error;
        return result;
    }
    // Parts of a point that never got its root: a crashed or stopped run's.
    const QString partsPrefix = generationFolder(generation) + QStringLiteral("/parts/");
    const StorageListing parts = m_driver->list(generationFolder(generation) + QStringLiteral("/parts"));
    for (const StorageObjectInfo& object : parts.objects) {
        const int sequence = object.key.mid(partsPrefix.size()).section(QLatin1Char('/'), 0, 0).toInt();
        if (!sequences.contains(sequence))
            m_driver->remove(object.key);
    }
    QSet<QString> named;
    if (cached) {
        named = *cached;
    } else {
        ChunkIndex index;
        result.error = loadIndex(generation, transform, &index, &named);
        if (!result.error.isEmpty())
            return result; // never remove packs on a partial view of the index
    }
    QStringList unnamed;
    for (const StorageObjectInfo& object : stored.objects) {
        if (!named.contains(object.key))
            unnamed.append(object.key);
    }
    if (unnamed.isEmpty())
        return result;

    // Every point wrote its index before its tree: a point without one has
    // lost it, and the packs no index names are the ones it needs.
    int orphan = -1;
    for (int sequence : sequences) {
        const QString prefix = indexFolder(generation) + QLatin1Char('/') + sequenceName(sequence) + QLatin1Char('-');
        const bool indexed = std::any_of(indexes.objects.cbegin(), indexes.objects.cend(),
            [&prefix](const StorageObjectInfo& object) { return object.key.startsWith(prefix); });
        if (!indexed) {
            orphan = sequence;
            break;
        }
    }
    if (orphan < 0) {
        for (const QString& key : std::as_const(unnamed)) {
            const StorageStatus removed = m_driver->remove(key);
            if (!removed.ok()) {
                result.error = removed.error;
                return result;
            }
            result.removed.append(key);
        }
        return result;
    }
    const PackReader reader(m_driver, &transform, &identifier);
    QVector<PackSummary> packs;
    for (const QString& key : std::as_const(unnamed)) {
        const PackContents contents = reader.readTrailer(key);
        if (!contents.ok())
            continue; // a damaged pack stays for a verify to name, never silently dropped
        packs.append({key, contents.size, contents.entries});
        result.adopted.append(key);
    }
    const StorageStatus written = writeIndex(generation, orphan, QStringLiteral("rebuilt"), packs, transform);
    result.error = written.error;
    return result;
}

} // namespace NVB::Engine
