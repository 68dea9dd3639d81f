#pragma once

#include <QList>
#include <QString>
#include <QUuid>

#include "store/storedrestorepoint.h"

namespace NVB::Engine {

class EngineStore;

// Deletes all of a plan's backup data on one storage, in either format:
// every object below the plan's folder first, then the bunch with its
// generations and points from the store. As with one generation, a removal
// cut short leaves the bunch listed and asking again finishes it.
class BunchRemover
{
public:
    struct Result
    {
        QString error;
        QList<QUuid> generations; // the generations that went
        QList<StoredRestorePoint> points; // and their points
    };

    static Result remove(EngineStore* store, const QUuid& connectionId, const QUuid& bunchId);
};

} // namespace NVB::Engine
