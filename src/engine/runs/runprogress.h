#pragma once

#include <QList>
#include <QString>
#include <QUuid>

namespace NVB::Engine {

// Where a run stands; handed from the run's worker to the engine's thread.
struct RunProgress
{
    QString currentFile;
    qint64 scannedCount = 0;
    qint64 scannedSize = 0;
    qint64 copiedCount = 0;
    qint64 copiedSize = 0;
    qint64 failedCount = 0;
    qint64 elapsedMs = 0;
    bool scanning = true;
    // What the run will take, from the pass made before copying; -1 while
    // that pass runs. `transferStartMs` is when it ended, on the run's clock.
    qint64 totalCount = -1;
    qint64 totalSize = -1;
    qint64 transferStartMs = 0;
    // Disk image runs: each volume's share read and stored, in percent.
    struct Volume
    {
        QUuid diskId;
        QString diskName;
        QUuid volumeId;
        QString volumeName;
        int read = 0;
        int upload = 0;
    };
    QList<Volume> volumes;
};

} // namespace NVB::Engine
