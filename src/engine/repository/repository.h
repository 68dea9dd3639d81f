#pragma once

#include <memory>

#include <QHash>
#include <QList>
#include <QSet>
#include <QStringList>
#include <QUuid>

#include "chunking/chunkidentifier.h"
#include "repository/packresult.h"
#include "repository/pointtree.h"
#include "storage/storageresult.h"

namespace NVB::Engine {

class ChunkTransform;
class ObjectKey;
class StorageDriver;

// Where a chunk lies: which pack, and its entry there.
struct ChunkLocation
{
    QString pack;
    PackEntry entry;
};

// The chunk index of one generation: every chunk its packs hold.
using ChunkIndex = QHash<QByteArray, ChunkLocation>;

// What reading and writing a generation takes: its transform, how its chunks
// are named and cut. Enciphered generations key all three to the password.
struct OpenedGeneration
{
    std::unique_ptr<ChunkTransform> transform;
    ChunkIdentifier identifier;
    quint64 chunkerSeed = 0;
    bool enciphered = false;
    QString error;
};

// The layout of the new format's repository of one plan below `root`:
//
//   <root>/config                                   format, chunker, ids
//   <root>/generations/<generation>/generation      its chunk transform
//   <root>/generations/<generation>/packs/<xx>/<sha-256 of the pack>
//   <root>/generations/<generation>/index/<sequence>-<run>   packs of a run
//   <root>/generations/<generation>/points/<sequence>        the point's tree
//   <root>/generations/<generation>/parts/<sequence>/<writer>/<n>   its parts
//
// A run writes its packs, then one index object naming them, then the tree;
// a point exists once its tree does. Everything a new engine needs is found
// by listing "generations" and reading these objects, and deleting a
// generation's folder frees exactly its data. Not thread-safe; one per run.
class Repository
{
public:
    static constexpr int FormatVersion = 1;

    Repository(StorageDriver* driver, const QString& root);

    // The transform a generation records, or null for an unknown name.
    static std::unique_ptr<ChunkTransform> transform(const QString& name);

    StorageDriver* driver() const { return m_driver; }
    QString packFolder(const QUuid& generation) const;
    // The generation's record: its transform; written first, removed last.
    QString generationKey(const QUuid& generation) const;
    QString treeKey(const QUuid& generation, int sequence) const;
    // Part `index` of the tree a writer made for a point (PointTreeWriter).
    QString partKey(const QUuid& generation, int sequence, const QString& writer, int index) const;
    QString partsFolder(const QUuid& generation, int sequence) const;

    // Writes the repository's configuration if it is missing and the
    // generation's record; an existing generation keeps its transform.
    // `transformName` is the compression step ("identity", "zstd-3"); with a
    // `key` the generation is enciphered under it and records its salt and
    // check.
    StorageStatus startGeneration(
        const QUuid& generation, const QString& transformName, const ObjectKey* key = nullptr);
    // The generation's transform and chunk naming under `password`. A wrong
    // password fails here, from the record alone, with "wrong password".
    OpenedGeneration openGeneration(const QUuid& generation, const QString& password = {}) const;
    // The generation's transform, or null with `error` set.
    std::unique_ptr<ChunkTransform> generationTransform(
        const QUuid& generation, QString* error, const QString& password = {}) const;
    QList<QUuid> generations(QString* error) const;
    QList<int> points(const QUuid& generation, QString* error) const;
    // Removes every object of the generation: its points, index and packs.
    StorageStatus removeGeneration(const QUuid& generation);

    // The packs of one run, named by the point's sequence and the run's id so
    // that a crashed run's index is never overwritten by a later one.
    StorageStatus writeIndex(const QUuid& generation, int sequence, const QString& run,
        const QVector<PackSummary>& packs, const ChunkTransform& transform);
    QString indexKey(const QUuid& generation, int sequence, const QString& run) const;
    // The generation's index objects, without reading them.
    QStringList indexKeys(const QUuid& generation, QString* error) const;
    // The packs one index object names, or why it cannot be read.
    QString readIndexObject(const QString& key, const ChunkTransform& transform, QVector<PackSummary>* packs) const;
    // Every index object of the generation merged. `packs` gets the packs
    // they name. An unreadable index object is an error.
    QString loadIndex(const QUuid& generation, const ChunkTransform& transform, ChunkIndex* index,
        QSet<QString>* packs = nullptr) const;

    // Every pack the generation's index objects name, with its chunks.
    QString packSummaries(const QUuid& generation, const ChunkTransform& transform, QVector<PackSummary>* packs) const;

    // Writes a whole tree at once (PointTreeWriter writes one as it grows).
    StorageStatus writeTree(const PointTree& tree, const ChunkTransform& transform);
    // The whole tree, or an empty one with the reason in `error`; a run
    // that must not hold it reads it with PointTreeReader.
    PointTree readTree(const QUuid& generation, int sequence, const ChunkTransform& transform, QString* error) const;
    // The point's root, then its parts.
    StorageStatus removeTree(const QUuid& generation, int sequence);
    // Parts of the point not made by `writer`: a crashed run's, or those of
    // a tree since replaced. Best effort: what stays is space, not damage.
    void removeStaleParts(const QUuid& generation, int sequence, const QString& writer);

    struct Tidy
    {
        QString error;
        QStringList removed; // packs no index named: a crashed or stopped run's
        QStringList adopted; // packs a lost index named, indexed again
    };
    // Puts a generation back in order after a crash: packs that no index
    // names are removed, unless a point has lost its index, in which case
    // their trailers rebuild it.
    // `named`, when given, is the set of packs the index names (a caller's
    // cache of it); otherwise every index object is read.
    Tidy tidy(const QUuid& generation, const ChunkTransform& transform, const ChunkIdentifier& identifier,
        const QSet<QString>* named = nullptr);

private:
    QString generationFolder(const QUuid& generation) const;
    QString indexFolder(const QUuid& generation) const;

    StorageDriver* m_driver;
    QString m_root;
};

} // namespace NVB::Engine
