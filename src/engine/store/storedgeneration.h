#pragma once

#include <QDateTime>
#include <QString>
#include <QUuid>

namespace NVB::Engine {

// One chain of restore points in a bunch: a full run starts a generation,
// the incremental runs after it extend it.
struct StoredGeneration
{
    QUuid id;
    QUuid bunchId;
    QUuid connectionId;
    int status = 0;
    int brokenType = 0;
    int deepSync = 0;
    bool encrypted = false;
    QString hint;
    qint64 storageSize = 0;
    QDateTime firstRestorePoint;
    QDateTime lastRestorePoint;
};

} // namespace NVB::Engine
