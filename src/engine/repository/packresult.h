#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

namespace NVB::Engine {

// Where one chunk lies in a pack: `length` stored (transformed) bytes from
// `offset`, which decode to `rawLength` bytes whose id is `id`.
struct PackEntry
{
    QByteArray id;
    qint64 offset = 0;
    qint64 length = 0;
    qint64 rawLength = 0;
};

// A pack that a PackWriter has stored: what the index of its generation
// records.
struct PackSummary
{
    QString key;
    qint64 size = 0;
    QVector<PackEntry> entries;
};

// The trailer of a stored pack, or why it cannot be read.
struct PackContents
{
    QString error;
    qint64 size = 0;
    QVector<PackEntry> entries;
    bool ok() const { return error.isEmpty(); }
};

// The raw bytes of one chunk, verified against its id, or why not.
struct ChunkData
{
    QString error;
    QByteArray data;
    bool ok() const { return error.isEmpty(); }
};

} // namespace NVB::Engine
