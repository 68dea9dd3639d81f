#pragma once

#include <QHash>
#include <QList>
#include <QStringList>
#include <QUuid>

namespace NVB::Engine {

class StoreDatabase;

// Taking things out of the repository's tables: a bunch or a generation
// whole, or paths and points as retention expires them. Content rows are
// shared by a range of points, so removing from one point splits rows
// rather than deleting them.
class RestorePointRemoval
{
public:
    explicit RestorePointRemoval(StoreDatabase& database);

    bool removeBunch(const QUuid& connectionId, const QUuid& bunchId);
    bool removeGeneration(const QUuid& generationId);
    // In one transaction: the listed paths out of their restore points, then
    // the listed points whole (their content with them).
    bool removeFromRestorePoints(const QHash<qint64, QStringList>& pathsByPoint, const QList<qint64>& points);

private:
    StoreDatabase& m_db;
};

} // namespace NVB::Engine
