#pragma once

#include <QList>
#include <QString>
#include <QUuid>

#include "store/storedrestorepoint.h"

namespace NVB::Engine {

class EngineStore;

// Deletes one generation of a plan's backup data, in either format: its
// objects on the storage first, then its records (points, content, cached
// index) from the store. Objects go before records so that a removal cut
// short is still listed and can be asked for again; the storage side of
// each format is safe to repeat (a missing object is not an error).
class GenerationRemover
{
public:
    struct Result
    {
        QString error;
        QList<StoredRestorePoint> points; // the points that went with it
    };

    static Result remove(
        EngineStore* store, const QUuid& connectionId, const QUuid& bunchId, const QUuid& generationId);
};

} // namespace NVB::Engine
