#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include "storage/storageresult.h"
#include "treepart.h"

namespace NVB::Engine {

class ChunkTransform;
class Repository;

// Writes a restore point's tree as it is built: entries go into parts of a
// few MiB, each stored (through the generation's transform) once full, so
// the tree is never held whole; the root, written last, names the parts and
// makes the point exist. A root replaced later (a trimmed point) takes its
// own parts; the parts of the root it replaced are removed after it.
class PointTreeWriter
{
public:
    static constexpr qint64 DefaultPartSize = 4 * 1024 * 1024;

    // `header` gives the point's generation, sequence, start and plan.
    PointTreeWriter(Repository* repository, const ChunkTransform* transform, const PointTree& header,
        qint64 partSize = DefaultPartSize);

    StorageStatus add(const TreeEntry& entry);
    StorageStatus finish();
    // Removes the parts written so far; the root was never written.
    void abandon();

    qint64 count() const { return m_count; }
    // Stored bytes of the parts and the root.
    qint64 bytesWritten() const { return m_bytesWritten; }

private:
    StorageStatus flushPart();

    Repository* m_repository;
    const ChunkTransform* m_transform;
    qint64 m_partSize;
    TreeRoot m_root;
    QByteArray m_part;
    int m_partCount = 0;
    QString m_lastFolder;
    bool m_started = false;
    QStringList m_written;
    qint64 m_count = 0;
    qint64 m_bytesWritten = 0;
};

} // namespace NVB::Engine
