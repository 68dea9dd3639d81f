#pragma once

#include <functional>
#include <memory>

#include <QList>

#include "storedcontent.h"

class QSqlQuery;

namespace NVB::Engine {

class StoreDatabase;

// A backup run's new and changed entries, written to `staged_contents` in
// batches while the run walks instead of held until the point commits.
// Each batch is a transaction of its own and need not survive a power cut:
// the point's commit moves the rows into `contents` (see ContentChanges),
// and rows of a run that never committed are deleted when it ends or at the
// next start.
class ContentStaging
{
public:
    ContentStaging(StoreDatabase& database, qint64 runId);
    ~ContentStaging();

    bool add(const QList<StoredContent>& batch);
    // The run's staged entries, a batch at a time in path order (path, type,
    // size, deletion, object, stored size and encoding only); false when
    // they cannot be read.
    static bool forEachBatch(
        StoreDatabase& database, qint64 runId, const std::function<void(const QList<StoredContent>&)>& take);
    qint64 count() const { return m_count; }

private:
    StoreDatabase& m_db;
    qint64 m_runId;
    qint64 m_count = 0;
    std::unique_ptr<QSqlQuery> m_insert;
};

} // namespace NVB::Engine
