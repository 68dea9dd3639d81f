#pragma once

#include <QList>
#include <QStringList>

#include "storedcontent.h"

namespace NVB::Engine {

// A restore point told as what changed since the previous point of its
// generation: a run over an unchanged tree then writes nothing per file.
struct ContentChanges
{
    // New or changed entries; each replaces the entry of the same path.
    QList<StoredContent> added;
    // Paths the new point no longer holds.
    QStringList removed;
    // Folders none of whose previous children the new point holds, unless
    // `added` names them again: a deleted or no longer selected subtree
    // leaves one of these per folder instead of one path per file.
    QStringList emptiedFolders;
    // Nothing of the previous point carries over (it could not be read).
    bool replacesAll = false;
    // Set: the run (by its id) staged more new or changed entries with
    // ContentStaging; they count as `added`.
    qint64 stagedRun = 0;
};

} // namespace NVB::Engine
