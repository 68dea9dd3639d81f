#pragma once

#include <optional>

#include <QJsonArray>
#include <QObject>
#include <QSet>
#include <QStringList>
#include <QUuid>

#include "outcome.h"
#include "runs/runprogress.h"
#include "store/storedaccount.h"
#include "store/storedrestorepoint.h"

namespace NVB::Info::Plan {
class Base;
}

namespace NVB::Engine {

class EngineStore;
class Notifier;
class RunManager;
class Scheduler;

// What the engine does, apart from how it is asked: plans, accounts, runs and
// the notifications every change sends. Lives on the engine's main thread.
class Engine : public QObject
{
    Q_OBJECT

public:
    Engine(EngineStore* store, Notifier* notifier, QObject* parent = nullptr);
    ~Engine() override;

    // Closes what a previous engine left running and arms the schedules.
    void start();
    // Stops every run, records it, and tells the consoles to close.
    void shutdown();

    EngineStore* store() const { return m_store; }
    Notifier* notifier() const { return m_notifier; }

    // Plans
    Outcome savePlan(const QUuid& id, const QString& xml, const QString& profile);
    Outcome removePlan(const QUuid& id);
    // Deletes one generation of a plan's backup data from the storage and
    // the store, announcing each point, the generation and the outcome.
    Outcome removeGeneration(const QUuid& connectionId, const QUuid& bunchId, const QUuid& generationId);
    // All of a plan's data on one storage, every generation.
    Outcome removeBunch(const QUuid& connectionId, const QUuid& bunchId);
    Outcome startPlan(const QUuid& id, bool forceFull, bool verify = false);
    Outcome stopPlan(const QUuid& id);
    QJsonArray planList();
    std::optional<QJsonObject> planInfo(const QUuid& id);
    std::optional<QString> planXml(const QUuid& id);
    // The network shares that file backup plans include.
    QStringList usedShares();
    bool isRunning(const QUuid& id) const;
    // A storage whose repository is being read back into the store: its
    // plans do not start meanwhile, since a run records the very points the
    // synchronisation compares.
    void setSynchronizing(const QUuid& accountId, bool synchronizing);

    // Accounts
    Outcome saveAccount(const StoredAccount& account);
    Outcome removeAccount(const QUuid& id);
    // The connection rows of the storage table.
    QJsonArray connections();
    std::optional<QJsonObject> connection(const QUuid& id);

private slots:
    void onRunStarted(const QUuid& planId, int subtype);
    void onRunProgress(const QUuid& planId, int subtype, const NVB::Engine::RunProgress& progress);
    void onRunFinished(const QUuid& planId, int subtype, int planResult, const NVB::Engine::StoredRestorePoint& point,
                       bool newBunch, bool newGeneration);
    void onDue(const QUuid& planId, bool forceFull);

private:
    // The first path of a file plan that is not a plain absolute path.
    static QString unplainPath(const NVB::Info::Plan::Base& record);
    void notifyStateChange(const QUuid& planId, int state, int lastState);
    // What a deletion took, point by point, then its outcome: a null
    // generation id stands for the whole bunch.
    void announceRemoval(const QUuid& connectionId, const QUuid& bunchId, const QUuid& generationId,
        const QString& error, const QList<StoredRestorePoint>& points, const QList<QUuid>& generations);

    EngineStore* m_store;
    Notifier* m_notifier;
    RunManager* m_runs;
    Scheduler* m_scheduler;
    QSet<QUuid> m_synchronizing;
};

} // namespace NVB::Engine
