#pragma once

#include <QDateTime>
#include <QUuid>

namespace NVB::Engine {

// One run kept in the repository: a restore point of a generation of the
// plan's bunch on one storage connection.
struct StoredRestorePoint
{
    qint64 rowId = 0;
    QUuid connectionId;
    QUuid bunchId;
    QUuid generationId;
    int sequenceNumber = 0;
    QDateTime startUtc;
    int backupType = 0; // 0 full, 2 incremental
    int type = 2;       // 2: offered for a restore
    int status = 0;     // 0 clean, 1 warning, 2 error
    int deepSync = 0;
    bool encrypted = false;
    qint64 sizeOnStorage = 0;
};

} // namespace NVB::Engine
