#include "operationmanager.h"

#include <libssh/libssh.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QMutexLocker>

#include "cloudconfig.h"
#include "cloudtype.h"
#include "core/nvldebug.h"
#include "operations/checkconfig.h"
#include "operations/createcontainer.h"
#include "operations/listcontainers.h"
#include "operations/listing.h"

namespace NVL::Cloud {

namespace {

bool hasKnownType(const QMap<QString, QVariant>& config, const QString& what)
{
    bool ok = false;
    NVL::Cloud::typeFromName(config.value(Config::Type).toString(), &ok);
    if (!ok)
        NVL::NvlDebug(QStringLiteral("NVB")).warning()
            << QStringLiteral("Can't make the operation %1: unknown cloud type \"%2\"")
                   .arg(what, config.value(Config::Type).toString());
    return ok;
}

void stopWorkersAtExit()
{
    OperationManager::instance().stopWorkers();
}

} // namespace

OperationManager& OperationManager::instance()
{
    static OperationManager manager;
    return manager;
}

OperationManager::OperationManager()
{
    // libssh (and OpenSSL under it) set up here, inside the constructor, so
    // that their exit handlers are registered before this object's destructor
    // and therefore run after it: no worker touches OpenSSL after its cleanup.
    ssh_init();
    // Network waits, not CPU work: more threads than cores is right here, and
    // enough that a few stalled servers (each ended by its deadline) cannot
    // hold back a listing against a healthy one.
    m_pool.setMaxThreadCount(64);
    m_pool.setExpiryTimeout(30000);
    if (QCoreApplication::instance())
        qAddPostRoutine(stopWorkersAtExit);
}

OperationManager::~OperationManager()
{
    stopWorkers();
    {
        QMutexLocker locker(&m_mutex);
        m_operations.clear();
    }
    ssh_finalize();
}

bool OperationManager::stopWorkers(int msecs)
{
    // A job still queued in the pool is not running yet and so cannot be
    // cancelled; cancel again until the pool is empty, so that one starting
    // late is stopped too instead of running to its own deadline.
    QElapsedTimer clock;
    clock.start();
    for (;;) {
        {
            QMutexLocker locker(&m_mutex);
            for (const CancelToken& cancel : qAsConst(m_running))
                cancel.cancel();
        }
        const qint64 left = msecs - clock.elapsed();
        if (left <= 0)
            return m_pool.waitForDone(0);
        if (m_pool.waitForDone(int(qMin<qint64>(left, 50))))
            return true;
    }
}

int OperationManager::runningJobs() const
{
    QMutexLocker locker(&m_mutex);
    return m_running.size();
}

void OperationManager::jobStarted(const CancelToken& cancel)
{
    QMutexLocker locker(&m_mutex);
    m_running.append(cancel);
}

void OperationManager::jobEnded(const CancelToken& cancel)
{
    QMutexLocker locker(&m_mutex);
    m_running.removeOne(cancel);
}

QSharedPointer<IOperation> OperationManager::keep(IOperation* operation)
{
    // Deleted later, never inside a slot that is still running on it: owners
    // usually remove() from their finished() slot.
    QSharedPointer<IOperation> pointer(operation, &QObject::deleteLater);
    QMutexLocker locker(&m_mutex);
    m_operations.insert(operation->id(), pointer);
    return pointer;
}

void OperationManager::release(const QUuid& id)
{
    QSharedPointer<IOperation> last;
    {
        QMutexLocker locker(&m_mutex);
        last = m_operations.take(id);
    }
}

QSharedPointer<IOperation> OperationManager::checkConfig(const QMap<QString, QVariant>& config)
{
    if (!hasKnownType(config, OperationType::CheckConfig))
        return {};
    return keep(new Operation::CheckConfig(config));
}

QSharedPointer<IOperation> OperationManager::listContainers(const QMap<QString, QVariant>& config)
{
    if (!hasKnownType(config, OperationType::ListContainers))
        return {};
    return keep(new Operation::ListContainers(config));
}

QSharedPointer<IOperation> OperationManager::createContainer(
    const QMap<QString, QVariant>& config, const QJsonObject& params)
{
    if (!hasKnownType(config, OperationType::CreateContainer))
        return {};
    return keep(new Operation::CreateContainer(config, params));
}

QSharedPointer<IOperation> OperationManager::listing(const QMap<QString, QVariant>& config, const QString& prefix,
    const QString& delimiter, const QString& marker, unsigned short maxKeys)
{
    if (!hasKnownType(config, OperationType::Listing))
        return {};
    return keep(new Operation::Listing(config, prefix, delimiter, marker, maxKeys));
}

QSharedPointer<IOperation> OperationManager::operation(const QUuid& id) const
{
    QMutexLocker locker(&m_mutex);
    return m_operations.value(id);
}

int OperationManager::count() const
{
    QMutexLocker locker(&m_mutex);
    return m_operations.size();
}

bool OperationManager::waitForDone(int msecs)
{
    return m_pool.waitForDone(msecs);
}

} // namespace NVL::Cloud
