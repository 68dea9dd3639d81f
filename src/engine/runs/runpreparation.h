#pragma once

#include <QList>
#include <QString>
#include <QUuid>

#include "runoutcome.h"
#include "store/storedcontent.h"
#include "store/storedrestorepoint.h"

namespace NVB::Engine {

// What the preparations of the several kinds of run share: where a plan's
// data lies on its account and how a worker's result becomes an outcome.
class RunPreparation
{
public:
    static QString noBraces(const QUuid& id) { return id.toString(QUuid::WithoutBraces); }
    // The new format's repository of a plan, as a key below the account's folder.
    static QString archiveRoot(const QString& prefix, const QUuid& planId);
    // A point of the new format is known by its tree on the storage.
    static bool isArchivePoint(const QString& folder, const QString& prefix, const StoredRestorePoint& point);
    static RunOutcome failedOutcome(const QString& message);
    // A restore point's content, read on the calling worker's own connection:
    // a point of many files takes a while to read, and the serving thread's
    // connection must stay free. Empty, with `error` set, when the store fails.
    static QList<StoredContent> loadContent(const QString& storeFile, qint64 row, QString* error);

    template<typename JobResult> static RunOutcome outcomeOf(JobResult&& result)
    {
        RunOutcome outcome;
        outcome.planResult = result.planResult;
        outcome.message = result.message;
        outcome.files = std::move(result.files);
        outcome.totals = result.totals;
        return outcome;
    }
};

} // namespace NVB::Engine
