#pragma once

#include <QDateTime>
#include <QString>
#include <QUuid>

namespace NVB::Engine {

// One file of a run in the history.
struct RunFileRecord
{
    // Removed: a restore point or generation that retention took away.
    enum Operation { Copied = 1, Restored = 2, Failed = 3, Skipped = 4, Removed = 5 };

    qint64 id = 0;
    qint64 runId = 0;
    QUuid planId;
    QString planName;
    QString file;
    int operation = Copied;
    qint64 size = 0;
    QDateTime modifiedUtc;
    QDateTime finishUtc;
    qint64 durationMs = 0;
    QString message;
};

} // namespace NVB::Engine
