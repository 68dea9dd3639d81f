#pragma once

#include <QDateTime>
#include <QString>
#include <QUuid>

namespace NVB::Engine {

// One run of a plan in the history.
struct RunRecord
{
    qint64 id = 0;
    QUuid planId;
    QString planName;
    int operation = 1; // the plan's job kind: 1 backup, 2 restore
    int result = -1;
    QDateTime startUtc;
    qint64 durationSeconds = 0;
    qint64 size = 0;
    qint64 fileCount = 0;
    QString errorMessage;
};

} // namespace NVB::Engine
