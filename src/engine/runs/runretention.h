#pragma once

#include <QString>
#include <QUuid>

#include "activerun.h"
#include "retention/retentionrules.h"

namespace NVB::Engine {

// A backup plan's retention, run on the worker right after the run's restore
// point is in the store: prunes by the plan's rules in either format,
// writes each removal to the run's history and hands the removed points and
// generations to the outcome so that the consoles are told.
class RunRetention
{
public:
    // `repositoryRoot` and `password` are the new format's; unused otherwise.
    static std::function<void(const QString& storeFile, RunOutcome* outcome)> afterPoint(const RetentionRules& rules,
        bool archive, const QUuid& connection, const QUuid& bunch, const QString& planName, const QString& storageRoot,
        const QString& repositoryRoot, const QString& password);
};

} // namespace NVB::Engine
