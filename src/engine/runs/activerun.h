#pragma once

#include <atomic>
#include <functional>
#include <memory>

#include <QElapsedTimer>
#include <QFutureWatcher>
#include <QTimer>

#include "runoutcome.h"
#include "runprogress.h"
#include "store/runrecord.h"
#include "store/storedbunch.h"
#include "store/storedplan.h"
#include "store/storedrestorepoint.h"

namespace NVB::Engine {

// What a run's worker does, and where it reports how far it got.
using RunWork = std::function<RunOutcome(const std::atomic_bool&)>;
using ProgressSink = std::function<void(const RunProgress&)>;

// One plan's run while it is under way, as the run manager keeps it.
struct ActiveRun
{
    StoredPlan plan;
    RunRecord run;
    std::shared_ptr<std::atomic_bool> stop;
    QElapsedTimer clock;
    QFutureWatcher<RunOutcome>* watcher = nullptr;
    QTimer* stopAfter = nullptr;
    qint64 stopAfterSeconds = 0;
    // Set for a backup that makes a restore point.
    bool makesPoint = false;
    StoredBunch bunch;
    StoredRestorePoint point;
    bool newBunch = false;
    bool newGeneration = false;
    // On the worker, once the run's restore point is in the store (the
    // legacy format's retention).
    std::function<void(const QString& storeFile, RunOutcome* outcome)> afterPoint;
};

} // namespace NVB::Engine
