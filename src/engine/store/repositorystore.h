#pragma once

#include <memory>
#include <optional>

#include <QDateTime>
#include <QHash>
#include <QList>
#include <QStringList>
#include <QUuid>

#include "contentchanges.h"
#include "storedbunch.h"
#include "storedcontent.h"
#include "storedgeneration.h"
#include "storedrestorepoint.h"

class QSqlQuery;

namespace NVB::Engine {

class StoreDatabase;

// The repository: `bunches`, `generations`, `restore_points` and their
// `contents`, read and recorded; ContentRecorder writes a new point's
// `contents` rows for it, RestorePointRemoval takes them out.
class RepositoryStore
{
public:
    explicit RepositoryStore(StoreDatabase& database);
    ~RepositoryStore();

    QList<StoredBunch> bunches(const QUuid& connectionId);
    std::optional<StoredBunch> bunch(const QUuid& connectionId, const QUuid& bunchId);
    QList<StoredGeneration> generations(const QUuid& connectionId, const QUuid& bunchId);
    std::optional<StoredGeneration> generation(const QUuid& generationId);
    QList<StoredRestorePoint> restorePoints(
        const QUuid& connectionId, const QUuid& bunchId, const QUuid& generationId = QUuid());
    // The last restore point recorded, by the order of recording: a clock
    // set backwards cannot make an older point look newer.
    std::optional<StoredRestorePoint> latestRestorePoint(const QUuid& connectionId, const QUuid& bunchId);
    // The restore point a restore asks for: the newest started at or before
    // `startUtc`, or with an invalid time the last recorded.
    std::optional<StoredRestorePoint> restorePointAt(
        const QUuid& connectionId, const QUuid& bunchId, const QDateTime& startUtc);
    QList<StoredContent> content(qint64 restorePointRowId);
    // What the generation's latest recorded point holds directly below
    // `parent`, or every folder it holds entries in; nullopt when the store
    // fails. A run compares its walk with these one folder at a time.
    std::optional<QList<StoredContent>> currentChildren(const QUuid& generationId, const QString& parent);
    std::optional<QStringList> currentParents(const QUuid& generationId);
    // The object of one file in the generation's latest point whose encoding
    // has any of the bits of `encodingMask`, if there is one.
    std::optional<QString> currentObjectEncoded(const QUuid& generationId, int encodingMask);
    // The children of `parent` in a restore point, a page at a time.
    QList<StoredContent> contentChildren(qint64 restorePointRowId, const QString& parent, int offset, int limit);
    // Inside a caller's transaction: the bunch, the generation's figures,
    // the restore point and its content. Answers the point's row, 0 on error.
    qint64 insertRestorePoint(
        const StoredBunch& bunch, const StoredRestorePoint& point, const QList<StoredContent>& content);
    // The same with the point told as its changes since the generation's
    // latest recorded point.
    qint64 insertRestorePoint(const StoredBunch& bunch, const StoredRestorePoint& point, const ContentChanges& changes);

private:
    qint64 insertPointRow(const StoredBunch& bunch, const StoredRestorePoint& point);

    StoreDatabase& m_db;
    // Prepared once: a run asks for every folder of its tree.
    std::unique_ptr<QSqlQuery> m_childrenQuery;
};

} // namespace NVB::Engine
