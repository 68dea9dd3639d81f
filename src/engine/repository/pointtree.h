#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QUuid>
#include <QVector>

#include "store/storedcontent.h"

namespace NVB::Engine {

// One item of a restore point's tree: what the store keeps of it, and for a
// file the ids of its chunks in file order.
struct TreeEntry
{
    StoredContent item;
    QVector<QByteArray> chunks;
};

// The tree of one restore point of the new format: every folder, file and
// link with its metadata and, for files, the chunk list. Stored as compact
// JSON passed through the generation's chunk transform (an enciphered
// repository hides names too). Names are kept as NVL::ByteName text, which
// maps every byte sequence to text and back, so names that are not UTF-8
// survive unchanged.
struct PointTree
{
    static constexpr int Version = 1;

    QUuid generation;
    int sequence = 0;
    QDateTime startUtc;
    QString planName;
    QVector<TreeEntry> entries;

    QByteArray serialize() const;
    // Why `data` is not a tree, or an empty string with `tree` filled.
    static QString parse(const QByteArray& data, PointTree* tree);
};

} // namespace NVB::Engine
