#pragma once

#include <optional>
#include <vector>

#include <QList>
#include <QString>
#include <QStringList>
#include <QUuid>

#include "runprogress.h"
#include "store/contentchanges.h"
#include "store/runfilerecord.h"
#include "store/storedcontent.h"
#include "store/storedrestorepoint.h"

namespace NVB::Engine {

// What a run's worker hands back: its result value, the files it touched and,
// for a backup, the content of the restore point it made.
struct RunOutcome
{
    int planResult = 0;
    QString message;
    QList<RunFileRecord> files;
    QList<StoredContent> content;
    // Set instead of `content` when the run tells its point as the changes
    // since the previous one.
    std::optional<ContentChanges> changes;
    // Legacy backups: the earlier copies the run found whole on the storage
    // as it reused them (ConsistencyCheck::checkedKey), ascending, so that the
    // check after the run need not look them up again.
    std::vector<quint64> checkedObjects;
    // Legacy backups with the full check: the generation whose latest
    // point's copies the run looked up itself as it walked (null: none), and
    // what it found wrong with them.
    QUuid walkedGeneration;
    QStringList walkedProblems;
    RunProgress totals;
    // New-format backups: bytes read from the sources, the part of them new
    // to the generation, and the bytes written to the storage; -1 elsewhere.
    qint64 bytesRead = -1;
    qint64 bytesNew = -1;
    qint64 bytesStored = -1;
    // Set by the worker once the run's end is in the store.
    bool recorded = false;
    QString recordError;
    qint64 pointRowId = 0;
    qint64 runId = 0;
    // Earlier restore points the plan's retention removed after this run,
    // and generations it left empty and removed.
    QList<StoredRestorePoint> prunedPoints;
    QList<QUuid> prunedGenerations;
};

} // namespace NVB::Engine
