#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVector>

#include "repository/pointtree.h"
#include "store/storedcontent.h"

namespace NVB::Engine {

// A new-format point as the store records it: what its tree changed since
// the previous point's tree.
class TreeChanges
{
public:
    // New or changed entries into `added` (a file's object is `tree`, where
    // its data is described) and paths no longer held into `removed`;
    // `previous` is used up.
    static void between(QHash<QString, TreeEntry>* previous, const QVector<TreeEntry>& entries, const QString& tree,
        QList<StoredContent>* added, QStringList* removed);
    // What a tree keeps of an entry is equal.
    static bool sameEntry(const TreeEntry& a, const TreeEntry& b);
};

} // namespace NVB::Engine
