#pragma once

#include <atomic>
#include <functional>
#include <memory>

#include <QElapsedTimer>
#include <QFutureWatcher>
#include <QHash>
#include <QObject>
#include <QSet>
#include <QTimer>
#include <QUuid>

#include "activerun.h"
#include "store/storedrestorepoint.h"

namespace NVB::Info::Plan {
class Base;
}

namespace NVB::Engine {

class EngineStore;

// Runs plans, one worker each, and records what they did. Everything but the
// copying happens on the engine's thread: the store is written only here.
class RunManager : public QObject
{
    Q_OBJECT

public:
    explicit RunManager(EngineStore* store, QObject* parent = nullptr);
    ~RunManager() override;

    // Empty when the run started, else why it could not. A plan that can
    // start but cannot be carried out (no account, a provider this engine
    // cannot write to) starts and ends at once with a failed result and the
    // reason, so that the user finds it in the history.
    //
    // `verify` runs a backup plan's verify run instead: its last restore
    // point is read back and checked against the recorded checksums.
    QString start(const QUuid& planId, bool forceFull, bool verify = false);
    bool stop(const QUuid& planId);
    bool isRunning(const QUuid& planId) const { return m_runs.contains(planId); }
    int runningCount() const { return m_runs.size(); }
    // Stops every run and waits for the workers; used at shutdown.
    void stopAll();

signals:
    void started(const QUuid& planId, int subtype);
    void progressed(const QUuid& planId, int subtype, const NVB::Engine::RunProgress& progress);
    // `point` is valid (rowId set) when the run made a restore point;
    // `newBunch` and `newGeneration` tell what appeared with it.
    void finished(const QUuid& planId, int subtype, int planResult, const NVB::Engine::StoredRestorePoint& point,
        bool newBunch, bool newGeneration);
    // Restore points that a plan's retention removed after its run.
    void restorePointsRemoved(const QList<NVB::Engine::StoredRestorePoint>& points);
    void generationsRemoved(const QUuid& connectionId, const QUuid& bunchId, const QList<QUuid>& generations);

private:
    using Work = RunWork;
    QString prepareBackup(ActiveRun& active, const NVB::Info::Plan::Base& record, bool forceFull, Work* work);
    QString prepareRestore(ActiveRun& active, const NVB::Info::Plan::Base& record, Work* work);
    QString prepareVerify(ActiveRun& active, Work* work);
    void launch(const QUuid& planId, std::function<RunOutcome(const std::atomic_bool&)> work);
    void finish(const QUuid& planId, const RunOutcome& outcome);
    void reportProgress(const QUuid& planId, const RunProgress& progress);
    // Hands a worker's figures to reportProgress for the plan.
    ProgressSink reporter(const QUuid& planId);

    EngineStore* m_store;
    QHash<QUuid, ActiveRun> m_runs;
};

} // namespace NVB::Engine

Q_DECLARE_METATYPE(NVB::Engine::RunProgress)
Q_DECLARE_METATYPE(NVB::Engine::StoredRestorePoint)
