#pragma once

#include <QDateTime>
#include <QList>
#include <QString>
#include <QUuid>

#include "store/storedcontent.h"

namespace NVB::Engine {

// One restore point as the storage holds it, read back into what the store
// records of a point.
struct FoundPoint
{
    QUuid generation;
    int sequence = 0;
    QDateTime startUtc;
    qint64 sizeOnStorage = 0;
    bool encrypted = false;
    // False when the point's files cannot be told (an enciphered point
    // whose password the store does not know): it is recorded without them.
    bool contentKnown = true;
    QList<StoredContent> content;
};

// What one plan's folder on a storage holds, in one backup format. Points
// of a generation are read in ascending order.
class PlanReader
{
public:
    virtual ~PlanReader() = default;
    virtual bool isArchive() const = 0;
    // The plan's name as the storage knows it; empty when it keeps none.
    virtual QString planName() const = 0;
    virtual QList<QUuid> generations(QString* error) = 0;
    virtual QList<int> points(const QUuid& generation, QString* error) = 0;
    // False with `error` set when the point cannot be read at all.
    virtual bool read(const QUuid& generation, int sequence, FoundPoint* point, QString* error) = 0;
};

} // namespace NVB::Engine
