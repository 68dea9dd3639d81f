#pragma once

#include <QDateTime>
#include <QList>
#include <QString>
#include <QUuid>

#include "retentionrules.h"
#include "store/runfilerecord.h"
#include "store/storedrestorepoint.h"

namespace NVB::Engine {

// Applies a legacy plan's retention after one of its runs made a restore
// point: the expired versions leave the store first, in one transaction, and
// only then their objects leave the storage, so a failure in between leaves
// stray objects, never a point naming a missing one.
class RetentionJob
{
public:
    struct Result
    {
        int versions = 0; // expired versions removed
        QList<StoredRestorePoint> points; // restore points removed whole
        QList<QUuid> generations; // generations left without points, removed
        int removedPacks = 0; // new format: packs deleted by the prune
        qint64 freedBytes = 0;
        QString error;
    };

    // The removals as lines of the run's history, one per point and
    // generation, so the history tells why a point is no longer offered.
    static QList<RunFileRecord> history(
        const Result& result, const QUuid& planId, const QString& planName, const QDateTime& now);

    static Result apply(const QString& storeFile, const QUuid& connectionId, const QUuid& bunchId,
        const QString& storageRoot, const RetentionRules& rules, const QDateTime& now);
};

} // namespace NVB::Engine
