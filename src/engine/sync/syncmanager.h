#pragma once

#include <atomic>
#include <memory>

#include <QHash>
#include <QJsonArray>
#include <QObject>
#include <QUuid>

#include "commands/v1handler.h"
#include "repositorysync.h"

template<typename T> class QFutureWatcher;

namespace NVB::Engine {

class Engine;

// The engine's repository synchronisations: at most one per account, each on
// a worker, announced to every console with the SynchronizeRepository
// notifications (V1 and V2) as it starts, moves on, fails and ends. One per
// engine, a child of it.
class SyncManager : public QObject
{
    Q_OBJECT

public:
    ~SyncManager() override;

    static SyncManager* of(Engine* engine);
    // "SynchronizeRepository", "SynchronizeRepositoryCancel" and
    // "GetSynchronizeRepositoryList".
    static void add(Engine* engine, V1Handlers* handlers);

    Outcome start(const QUuid& accountId);
    Outcome cancel(const QUuid& accountId);
    // The synchronisations under way: account id and last status each.
    QJsonArray list() const;
    bool isSynchronizing(const QUuid& accountId) const { return m_jobs.contains(accountId); }

signals:
    void finished(const QUuid& accountId);

private:
    explicit SyncManager(Engine* engine);
    void onStatus(const QUuid& accountId, const QString& message);
    void onFinished(const QUuid& accountId);
    void announceStatus(const QUuid& accountId, const QString& message);

    struct Job
    {
        std::shared_ptr<std::atomic_bool> cancel;
        QString status;
        QFutureWatcher<RepositorySync::Result>* watcher = nullptr;
    };

    Engine* m_engine;
    QHash<QUuid, Job> m_jobs;
};

} // namespace NVB::Engine
