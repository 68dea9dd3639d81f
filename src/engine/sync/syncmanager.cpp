#include "syncmanager.h"

#include <QFutureWatcher>
#include <QtConcurrent>

#include "commands/paramreader.h"
#include "core/engine.h"
#include "core/nvldebug.h"
#include "server/notifier.h"
#include "service/commands/storage.h"
#include "service/notification/format.h"
#include "service/v2/notification/synchronizerepositoryerror.h"
#include "service/v2/notification/synchronizerepositoryfinished.h"
#include "service/v2/notification/synchronizerepositorystarted.h"
#include "service/v2/notification/synchronizerepositorystatus.h"
#include "store/enginestore.h"

namespace NVB::Engine {

namespace Commands = NVB::Common::Communication::Commands::Format::Storage;
namespace Format = NVB::Common::Communication::Notification::Format::Storage;
namespace V2N = NVB::Common::Communication::V2::Notification;

SyncManager::SyncManager(Engine* engine)
    : QObject(engine)
    , m_engine(engine)
{
    setObjectName(QStringLiteral("SyncManager"));
}

SyncManager::~SyncManager()
{
    // Workers end at their next check; the store stays as their last
    // transaction left it.
    for (const Job& job : std::as_const(m_jobs))
        *job.cancel = true;
}

SyncManager* SyncManager::of(Engine* engine)
{
    if (auto* existing = engine->findChild<SyncManager*>(QStringLiteral("SyncManager"), Qt::FindDirectChildrenOnly))
        return existing;
    return new SyncManager(engine);
}

void SyncManager::add(Engine* engine, V1Handlers* handlers)
{
    SyncManager* manager = of(engine);
    handlers->insert(QString::fromLatin1(Commands::SynchronizeRepository::Name), [manager](const QJsonObject& params) {
        ParamReader args(params);
        const QUuid id = args.uuid(Commands::SynchronizeRepository::Request::Id);
        return args.ok() ? manager->start(id) : Outcome::failure(args.error());
    });
    handlers->insert(
        QString::fromLatin1(Commands::SynchronizeRepositoryCancel::Name), [manager](const QJsonObject& params) {
            ParamReader args(params);
            const QUuid id = args.uuid(Commands::SynchronizeRepositoryCancel::Request::Id);
            return args.ok() ? manager->cancel(id) : Outcome::failure(args.error());
        });
    handlers->insert(QString::fromLatin1(Commands::GetSynchronizeRepositoryList::Name), [manager](const QJsonObject&) {
        return Outcome::success(
            {{QString::fromLatin1(Commands::GetSynchronizeRepositoryList::Reply::Key), manager->list()}});
    });
}

Outcome SyncManager::start(const QUuid& accountId)
{
    EngineStore* store = m_engine->store();
    const auto account = store->account(accountId);
    if (!account)
        return Outcome::failure(QStringLiteral("There is no storage account with the id %1").arg(accountId.toString()));
    if (m_jobs.contains(accountId))
        return Outcome::failure(
            QStringLiteral("The repository of \"%1\" is being synchronized already").arg(account->displayName));
    // A run reads and records the very points the synchronisation compares.
    QList<QUuid> plans = store->plansUsingAccount(accountId);
    for (const StoredBunch& bunch : store->bunches(accountId))
        plans.append(bunch.id);
    for (const QUuid& plan : std::as_const(plans)) {
        if (m_engine->isRunning(plan)) {
            const auto running = store->plan(plan);
            return Outcome::failure(
                QStringLiteral("The plan \"%1\" of this storage is running; synchronize its repository when it ends")
                    .arg(running ? running->name : plan.toString()));
        }
    }

    Job& job = m_jobs[accountId];
    m_engine->setSynchronizing(accountId, true);
    job.cancel = std::make_shared<std::atomic_bool>(false);
    job.watcher = new QFutureWatcher<RepositorySync::Result>(this);
    connect(job.watcher, &QFutureWatcher<RepositorySync::Result>::finished, this,
        [this, accountId] { onFinished(accountId); });

    m_engine->notifier()->notify(Format::SynchronizeRepositoryStarted::Type,
        {{QLatin1String(Format::SynchronizeRepositoryStarted::Id), accountId.toString()}});
    V2N::SynchronizeRepositoryStarted started;
    started.setConnectionId(accountId);
    m_engine->notifier()->notifyV2(started);
    NVL::NvlDebug(QStringLiteral("NVB")).info() << "Repository synchronisation of" << account->displayName << "started";

    const QString storeFile = store->filePath();
    const auto cancel = job.cancel;
    QPointer<SyncManager> self(this);
    job.watcher->setFuture(QtConcurrent::run([storeFile, accountId, cancel, self] {
        RepositorySync sync(storeFile, accountId, *cancel, [self, accountId](const QString& message) {
            if (!self)
                return;
            QMetaObject::invokeMethod(
                self.data(),
                [self, accountId, message] {
                    if (self)
                        self->onStatus(accountId, message);
                },
                Qt::QueuedConnection);
        });
        return sync.run();
    }));
    return Outcome::success();
}

Outcome SyncManager::cancel(const QUuid& accountId)
{
    const auto it = m_jobs.find(accountId);
    if (it == m_jobs.end())
        return Outcome::failure(QStringLiteral("The repository of this storage is not being synchronized"));
    *it->cancel = true;
    return Outcome::success();
}

QJsonArray SyncManager::list() const
{
    QJsonArray result;
    for (auto it = m_jobs.cbegin(); it != m_jobs.cend(); ++it)
        result.append(
            QJsonObject {{QStringLiteral("id"), it.key().toString()}, {QStringLiteral("status"), it->status}});
    return result;
}

void SyncManager::onStatus(const QUuid& accountId, const QString& message)
{
    const auto it = m_jobs.find(accountId);
    if (it == m_jobs.end())
        return;
    it->status = message;
    announceStatus(accountId, message);
}

void SyncManager::announceStatus(const QUuid& accountId, const QString& message)
{
    m_engine->notifier()->notify(Format::SynchronizeRepositoryStatus::Type,
        {{QLatin1String(Format::SynchronizeRepositoryStatus::Id), accountId.toString()},
            {QLatin1String(Format::SynchronizeRepositoryStatus::Message), message}});
    V2N::SynchronizeRepositoryStatus status;
    status.setConnectionId(accountId);
    status.setMessage(message);
    m_engine->notifier()->notifyV2(status);
}

void SyncManager::onFinished(const QUuid& accountId)
{
    const auto it = m_jobs.find(accountId);
    if (it == m_jobs.end())
        return;
    const RepositorySync::Result result = it->watcher->result();
    it->watcher->deleteLater();
    m_jobs.erase(it);
    m_engine->setSynchronizing(accountId, false);

    NVL::NvlDebug log(QStringLiteral("NVB"));
    for (const QString& note : result.notes)
        log.warning() << note;
    const QString summary = result.cancelled
        ? QStringLiteral("Synchronization cancelled: %1 restore points added, %2 removed before it stopped")
              .arg(result.added)
              .arg(result.removed)
        : QStringLiteral("Synchronization finished: %1 restore points added, %2 removed")
              .arg(result.added)
              .arg(result.removed);
    if (!result.error.isEmpty()) {
        log.warning() << result.error;
        m_engine->notifier()->notify(Format::SynchronizeRepositoryError::Type,
            {{QLatin1String(Format::SynchronizeRepositoryError::Id), accountId.toString()},
                {QLatin1String(Format::SynchronizeRepositoryError::Message), result.error}});
        V2N::SynchronizeRepositoryError error;
        error.setConnectionId(accountId);
        error.setMessage(result.error);
        error.setErrorList(result.notes);
        m_engine->notifier()->notifyV2(error);
    } else {
        log.info() << summary;
        announceStatus(accountId, summary);
        for (const QString& note : result.notes)
            announceStatus(accountId, note);
    }
    // The space each connection uses changed with its points.
    m_engine->notifier()->notify(
        NVB::Common::Communication::Notification::Format::Storage::UpdateConnections::Type, {});
    m_engine->notifier()->notify(Format::SynchronizeRepositoryFinished::Type,
        {{QLatin1String(Format::SynchronizeRepositoryFinished::Id), accountId.toString()}});
    V2N::SynchronizeRepositoryFinished finishedNotice;
    finishedNotice.setConnectionId(accountId);
    m_engine->notifier()->notifyV2(finishedNotice);
    emit finished(accountId);
}

} // namespace NVB::Engine
