#pragma once

#include <QDateTime>
#include <QString>
#include <QUuid>

namespace NVB::Engine {

class EngineStore;

// What a disk image restore point holds: the disks of the machine it was
// taken on, with the volumes it imaged marked as taken.
class DiskImageContent
{
public:
    struct Answer
    {
        QString error; // empty on success
        QString metaDataXml; // a DiskImageMetaData document
        qint64 pointRow = 0;
    };

    // `destination`: the backup plan's id, or a storage account's id when
    // that account holds one disk image backup only. An invalid `at` asks
    // for the newest point.
    static Answer describe(EngineStore* store, const QUuid& destination, const QDateTime& at);
};

} // namespace NVB::Engine
