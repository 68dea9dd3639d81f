#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QUuid>
#include <QVector>

#include "pointtree.h"

namespace NVB::Engine {

// The root of a restore point's tree (version 2): what the point is, its
// parts in order with each one's entry count and SHA-256, and where each
// folder's listing starts, so a run can read the listing of one folder
// without the rest of the tree.
struct TreeRoot
{
    struct Part
    {
        int count = 0;
        QByteArray sha256;
    };
    struct Listing
    {
        QString folder;
        int part = 0;
        int index = 0; // of its first entry within the part
    };

    QUuid generation;
    int sequence = 0;
    QDateTime startUtc;
    QString planName;
    QString writer; // names the folder of this root's parts
    QVector<Part> parts;
    QVector<Listing> listings;
};

// The binary records of a tree part: entries back to back, little endian,
// strings as u32 length and UTF-8 (of NVL::ByteName text, so any bytes
// survive). Per entry: path, u8 type, i64 modification time (ns), u32 mode,
// i64 owner, i64 group; a link adds its target; a file adds i64 size, i64
// change time (ns), u64 inode, u8 checksum length and the checksum, u32 chunk
// count and the chunk ids (32 bytes each).
class TreePart
{
public:
    static void append(QByteArray* part, const TreeEntry& entry);
    // Why `data` does not hold exactly `count` entries, or an empty string
    // with them appended to `entries`.
    static QString parse(const QByteArray& data, int count, QVector<TreeEntry>* entries);
    // The folder an entry is listed under: a folder opens its own listing
    // (its entry comes first, then its files and links), anything else
    // belongs to its parent's.
    static QString groupOf(const StoredContent& item);
    // groupOf(item) == folder, without making the folder's text: the
    // comparison runs once or twice for every entry of a run.
    static bool inGroup(const StoredContent& item, const QString& folder);
    // The folder of a file or link at `path` is `folder`.
    static bool inFolder(const QString& path, const QString& folder);

    static QByteArray rootData(const TreeRoot& root);
    // True when `data` starts as a version 2 root does.
    static bool isRoot(const QByteArray& data);
    static QString parseRoot(const QByteArray& data, TreeRoot* root);
};

} // namespace NVB::Engine
