#pragma once

#include <functional>

#include <QList>
#include <QUuid>

#include "storedcontent.h"

namespace NVB::Engine {

class StoreDatabase;

// The stored files of a set of legacy restore points, for checks that look
// at every object those points refer to. A content row is shared by every
// point in its sequence range, so each row comes once however many of the
// points hold it: reading the points one by one would cost the tree's size
// once per point and grow with every run, although most points share
// nearly every row.
class PointObjects
{
public:
    // Hands the files (path, type, size, deletion, object, stored size and
    // encoding only) to `take` a batch at a time; `take` answers false to
    // end early. The rows still open in `walked` (the current point's of
    // that generation, already looked at by the run) are left out. False
    // when the store cannot be read.
    static bool forEachBatch(StoreDatabase& database, const QList<qint64>& pointRows, const QUuid& walked,
        const std::function<bool(const QList<StoredContent>&)>& take);
};

} // namespace NVB::Engine
