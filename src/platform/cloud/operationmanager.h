#pragma once

#include <QHash>
#include <QJsonObject>
#include <QMap>
#include <QMutex>
#include <QSharedPointer>
#include <QThreadPool>
#include <QUuid>
#include <QVariant>

#include "ioperation.h"

namespace NVL::Cloud {

// Makes cloud operations and keeps each one until its owner calls remove().
// Every call answers null when the configuration names no known provider
// (Config::Type); a known provider that cannot do the request yet still gets an
// operation, which fails with a message that says so.
class OperationManager
{
public:
    static OperationManager& instance();

    // Logs in and checks that the destination is usable; cloudConfig()
    // afterwards holds what was learnt (a default port, the canonical path).
    QSharedPointer<IOperation> checkConfig(const QMap<QString, QVariant>& config);
    // Operation::ListContainers; data() is [{"Name": ...}, ...].
    QSharedPointer<IOperation> listContainers(const QMap<QString, QVariant>& config);
    // params is a ContainerParams json(): at least "Name".
    QSharedPointer<IOperation> createContainer(const QMap<QString, QVariant>& config, const QJsonObject& params);
    // Operation::Listing of the keys that start with prefix, below the
    // destination's root. delimiter "/" lists one level (folders come back as
    // folders), an empty one lists everything below. Keys after marker only, at
    // most maxKeys of them (0: 1000); the operation's marker() continues.
    QSharedPointer<IOperation> listing(const QMap<QString, QVariant>& config, const QString& prefix,
        const QString& delimiter, const QString& marker, unsigned short maxKeys);

    // A kept operation, null when there is none with that id.
    QSharedPointer<IOperation> operation(const QUuid& id) const;
    int count() const;

    // The workers of all operations; separate from the global pool so that a
    // slow server cannot stall other background work.
    QThreadPool* threadPool() { return &m_pool; }
    // Waits until no job runs any more; for shutdown and tests.
    bool waitForDone(int msecs = -1);
    // Cancels every running job (which closes its connection) and waits for
    // the workers. Runs by itself when the application object goes, before
    // the libraries' own exit cleanup; a later operation still works.
    bool stopWorkers(int msecs = 10000);
    // Jobs on worker threads right now, removed operations included.
    int runningJobs() const;

private:
    friend class IOperation;
    friend class AmazonOperationManager;

    OperationManager();
    ~OperationManager();

    QSharedPointer<IOperation> keep(IOperation* operation);
    void release(const QUuid& id);
    void jobStarted(const CancelToken& cancel);
    void jobEnded(const CancelToken& cancel);

    mutable QMutex m_mutex;
    QHash<QUuid, QSharedPointer<IOperation>> m_operations;
    QList<CancelToken> m_running;
    QThreadPool m_pool;
};

} // namespace NVL::Cloud
