#pragma once

#include <atomic>
#include <functional>
#include <vector>

#include "runs/runoutcome.h"

namespace NVB::Engine {

// After a backup, makes sure every object the new restore point refers to
// lies in the storage folder with the size recorded for it. The folder
// storage keeps no checksum of its own, so reading the data back against
// the recorded checksums is the verify run's work, not this check's.
// A missing or resized object turns the result into a warning that names it.
//
// With the plan's "full consistency check" the objects of every earlier
// restore point of the plan are checked too, so old versions kept only by
// older points are found missing as well; without it only the new point's.
class ConsistencyCheck
{
public:
    using Work = std::function<RunOutcome(const std::atomic_bool&)>;

    // How many objects a warning names before it only counts the rest.
    static constexpr int NamedObjects = 10;

    // The objects of `content` that are missing or of another size below
    // `storageRoot`, each as "object (reason)".
    // Objects whose key is in `checked` (ascending) were found whole moments
    // ago and are not looked up again.
    static QStringList problems(
        const QString& storageRoot, const QList<StoredContent>& content, const std::vector<quint64>& checked = {});

    // An object found present with `size` bytes on the storage.
    static quint64 checkedKey(const QString& object, qint64 size);

    // Turns a success into a warning naming the first of `found`, as every
    // format's check reports what it found.
    static void warn(RunOutcome* outcome, const QStringList& found);

    // `earlierPoints` are the store rows of the plan's earlier restore points
    // to check as well, read from the store file on the worker.
    static Work around(
        const QString& storageRoot, const QString& storeFile, const QList<qint64>& earlierPoints, Work work);
};

} // namespace NVB::Engine
