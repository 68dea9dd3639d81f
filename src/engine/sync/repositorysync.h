#pragma once

#include <atomic>
#include <functional>
#include <memory>

#include <QList>
#include <QString>
#include <QStringList>
#include <QUuid>

#include "store/storedaccount.h"

namespace NVB::Engine {

class PlanReader;
class StoreDatabase;

// Brings the engine's store in line with what one File System account's
// storage holds: restore points found there that the store lacks are
// recorded with their content, points whose data is gone leave the store,
// and plans the store never knew (an engine started afresh on an old
// storage) become bunches that can be browsed and restored. Both formats.
//
// Runs on a worker thread on a connection of its own. Each plan's removals
// are one transaction and each generation's additions another, so a cancel
// or a failure between them leaves a store that is consistent, only not yet
// fully in line.
class RepositorySync
{
public:
    using Status = std::function<void(const QString& message)>;

    struct Result
    {
        QString error; // the synchronisation could not run or was cut short
        QStringList notes; // what was recorded only in part, and why
        int added = 0; // restore points recorded
        int removed = 0; // restore points dropped
        bool cancelled = false;
    };

    RepositorySync(const QString& storeFile, const QUuid& accountId, const std::atomic_bool& cancel, Status status);
    ~RepositorySync();

    Result run();

private:
    bool prepareFolder(StoreDatabase& db, const StoredAccount& account, const QString& home);
    void syncPlan(StoreDatabase& db, const StoredAccount& account, const QString& folder, const QUuid& planId);

    QString m_storeFile;
    QUuid m_accountId;
    const std::atomic_bool& m_cancel;
    Status m_status;
    Result m_result;
};

} // namespace NVB::Engine
