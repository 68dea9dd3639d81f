#pragma once

#include <QDateTime>
#include <QString>
#include <QUuid>

namespace NVB::Info::Plan {
class Base;
}

namespace NVB::Engine {

// A plan as the engine keeps it: the XML the console sent, a few fields read
// from it for queries, and the summary of its last run.
struct StoredPlan
{
    QUuid id;
    QString profile;
    QString xml;
    QString name;
    int type = 0;    // content kind: 0 file, 1 disk image
    int subtype = 1; // job kind: 1 backup, 2 restore
    QUuid storageId;

    int status = 2; // a PlanStatus value: 1 running, 2 idle
    int lastResult = -1;
    QDateTime lastRunUtc;
    qint64 lastDuration = 0;
    qint64 lastFileCount = 0;
    qint64 lastFileSize = 0;
    qint64 lastUploadedCount = 0;
    qint64 lastUploadedSize = 0;
    qint64 lastFailedCount = 0;
    QString lastMessage;
    // The last schedule time that was run or deliberately passed over; a
    // missed run is one whose time lies after this and before now.
    QDateTime lastScheduledUtc;

    // Takes the fields the store queries from the plan's own record.
    void describe(const NVB::Info::Plan::Base& record);
};

} // namespace NVB::Engine
