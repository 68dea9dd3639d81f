#pragma once

#include <atomic>
#include <functional>

#include <QStringList>
#include <QUuid>

#include "runs/runoutcome.h"

namespace NVB::Engine {

class Repository;

// The new format's check after a backup: every pack the generation's index
// names must lie on the storage and hold at least the chunks recorded in it.
// A tree is only written once its packs are, so a pack missing or cut short
// here was lost or damaged on the storage since.
//
// With the plan's "full consistency check" every generation of the plan's
// repository is checked, so packs that only older points need are found
// missing as well; without it only the new point's generation.
class ArchiveConsistencyCheck
{
public:
    using Work = std::function<RunOutcome(const std::atomic_bool&)>;

    // The packs of `generation` that are missing or too short, each as
    // "pack (reason)"; a generation whose index cannot be read is one entry.
    // `password` opens an enciphered generation.
    static QStringList problems(const Repository& repository, const QUuid& generation, const QString& password = {});

    // Older generations enciphered under an earlier password are left out:
    // their points need that password, which a run does not have.
    static Work around(const QString& storageRoot, const QString& repositoryRoot, const QUuid& generation,
        bool everyGeneration, Work work, const QString& password = {});
};

} // namespace NVB::Engine
