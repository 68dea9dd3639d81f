#pragma once

#include <QList>
#include <QString>

#include "contentchanges.h"
#include "storedcontent.h"

namespace NVB::Engine {

class StoreDatabase;

// Records the content of a new restore point in its generation's `contents`
// rows: rows that still hold stay open, the rest end at the point before.
// Runs inside the caller's transaction; every failure is the database's.
class ContentRecorder
{
public:
    ContentRecorder(StoreDatabase& database, const QString& generation, qint64 sequence);

    // The point told whole: entries equal to the latest point's keep their
    // rows.
    bool record(const QList<StoredContent>& content);
    // The point told as its changes since the generation's latest point.
    bool record(const ContentChanges& changes);

private:
    bool hasContent();
    bool insert(const QList<const StoredContent*>& items);
    // Ends the open rows of the paths a run staged, and moves its staged
    // rows into the point.
    bool closeStaged(qint64 runId);
    bool insertStaged(qint64 runId);

    StoreDatabase& m_db;
    QString m_generation;
    qint64 m_sequence;
};

} // namespace NVB::Engine
