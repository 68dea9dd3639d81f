#pragma once

#include <QDateTime>
#include <QHash>
#include <QList>
#include <QStringList>

#include "retentionrules.h"
#include "store/storedcontent.h"
#include "store/storedrestorepoint.h"

namespace NVB::Engine {

// Decides which file versions of a legacy plan's restore points expire. A
// version is one stored object of a path. An expired version leaves every
// point that names it and its object goes; the newest point and everything
// it names are never touched, and a point left without files goes whole.
class RetentionPlanner
{
public:
    struct Point
    {
        StoredRestorePoint point;
        QList<StoredContent> content;
    };

    struct Result
    {
        QHash<qint64, QStringList> pathsByPoint; // rows to remove
        QList<qint64> points; // points to remove whole
        QStringList objects; // storage objects to delete
        int versions = 0; // expired versions
    };

    // `points` oldest first; `now` is the clock of the decision. `baseOf`
    // names the full version each block increment applies to: a full
    // version expires only together with every increment built on it.
    static Result plan(const QList<Point>& points, const RetentionRules& rules, const QDateTime& now,
        const QHash<QString, QString>& baseOf = {});
};

} // namespace NVB::Engine
