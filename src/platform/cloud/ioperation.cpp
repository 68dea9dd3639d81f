#include "ioperation.h"

#include <exception>

#include <QtConcurrent>

#include "core/nvldebug.h"
#include "operationmanager.h"
#include "providers/providerclient.h"

namespace NVL::Cloud {

namespace {

OperationResult runJob(
    const std::function<OperationResult(ProviderClient&, const QMap<QString, QVariant>&, const CancelToken&)>& work,
    const QMap<QString, QVariant>& config, const CancelToken& cancel)
{
    if (cancel.isCancelled())
        return OperationResult::failure(OperationError::Cancelled, QStringLiteral("Operation cancelled"));
    // Nothing may escape a worker thread: a throw here would end the process.
    try {
        const std::unique_ptr<ProviderClient> client = ProviderClient::create(config);
        return work(*client, config, cancel);
    } catch (const QString& text) {
        return OperationResult::failure(OperationError::InternalError, text);
    } catch (const std::exception& error) {
        return OperationResult::failure(OperationError::InternalError, QString::fromLocal8Bit(error.what()));
    } catch (...) {
        return OperationResult::failure(OperationError::InternalError, QStringLiteral("Unknown failure in operation"));
    }
}

} // namespace

IOperation::IOperation(const QString& type, const QMap<QString, QVariant>& config)
    : m_type(type)
    , m_id(QUuid::createUuid())
    , m_config(config)
{ }

IOperation::~IOperation()
{
    // A job still running keeps only copies; tell it that nobody waits.
    m_cancel.cancel();
}

void IOperation::run()
{
    if (m_removed) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning()
            << QStringLiteral("Operation %1 (%2) was removed and cannot run").arg(m_id.toString(), m_type);
        return;
    }
    if (m_state != Created) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning()
            << QStringLiteral("Operation %1 (%2) runs only once").arg(m_id.toString(), m_type);
        return;
    }
    m_state = Running;

    const Job work = job();
    const QMap<QString, QVariant> config = m_config;
    const CancelToken cancel = m_cancel;
    m_watcher = new QFutureWatcher<OperationResult>(this);
    connect(m_watcher, &QFutureWatcherBase::finished, this, &IOperation::onWorkDone);
    OperationManager& manager = OperationManager::instance();
    manager.jobStarted(cancel);
    m_watcher->setFuture(QtConcurrent::run(manager.threadPool(), [work, config, cancel]() {
        OperationResult result = runJob(work, config, cancel);
        OperationManager::instance().jobEnded(cancel);
        return result;
    }));
}

void IOperation::remove()
{
    if (m_removed) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning()
            << QStringLiteral("Operation %1 (%2) was already removed").arg(m_id.toString(), m_type);
        return;
    }
    m_removed = true;
    if (m_state == Running || m_state == Created) {
        m_cancel.cancel();
        m_state = Cancelled;
        if (m_watcher)
            m_watcher->disconnect(this);
    }
    OperationManager::instance().release(m_id);
}

void IOperation::onWorkDone()
{
    if (m_state != Running || !m_watcher)
        return;
    finish(m_watcher->result());
}

void IOperation::finish(const OperationResult& result)
{
    m_errorCode = result.errorCode;
    m_errorMessage = result.errorMessage;
    if (!result.config.isEmpty())
        m_config = result.config;
    if (result.isError()) {
        m_state = Failed;
        NVL::NvlDebug(QStringLiteral("NVB")).warning()
            << QStringLiteral("Operation %1 (%2) failed: (%3) %4")
                   .arg(m_id.toString(), m_type, QString::number(m_errorCode), m_errorMessage);
    } else {
        takeResult(result);
        m_state = Finished;
    }
    emit finished();
}

void IOperation::takeResult(const OperationResult&)
{ }

} // namespace NVL::Cloud
