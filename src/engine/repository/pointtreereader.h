#pragma once

#include <functional>

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVector>

#include "treepart.h"

namespace NVB::Engine {

class ChunkTransform;
class Repository;

// Reads a restore point's tree a part at a time. A version 2 tree gives its
// root first (the point, its parts and where each folder's listing starts),
// so a run compares one folder at a time and holds one part, never the
// whole tree. A version 1 tree (one JSON object, as engines wrote before)
// is read whole and served the same way.
class PointTreeReader
{
public:
    PointTreeReader(const Repository* repository, const ChunkTransform* transform);

    // Why the tree cannot be read, or an empty string.
    QString open(const QUuid& generation, int sequence);
    // The point without its entries.
    const PointTree& header() const { return m_header; }
    int version() const { return m_version; }

    // A folder's listing: its own entry (when the tree holds it), then its
    // files and links. Empty for a folder the tree does not list.
    QVector<TreeEntry> listing(const QString& folder, QString* error);
    // Every listed folder once, in tree order.
    QStringList folders() const;
    // Every entry in tree order; `take` returns false to stop early.
    QString forEach(const std::function<bool(const TreeEntry&)>& take);

private:
    QString loadPart(int part);

    const Repository* m_repository;
    const ChunkTransform* m_transform;
    QString m_key;
    int m_version = 0;
    PointTree m_header;
    TreeRoot m_root;
    QHash<QString, QVector<int>> m_byFolder; // listings of each folder
    int m_loaded = -1;
    QVector<TreeEntry> m_entries; // of the loaded part
};

} // namespace NVB::Engine
