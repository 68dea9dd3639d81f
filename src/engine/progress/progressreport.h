#pragma once

#include <QJsonObject>
#include <QUuid>

#include "runs/runprogress.h"
#include "service/v2/notification/planprogress.h"

namespace NVB::Engine {

// The three forms in which a run's progress goes out: the V1
// `Worker::ReportProgress` that the progress widgets read, the later
// `Worker::ReportProgress2`, and the typed V2 `PlanProgress`.
class ProgressReport
{
public:
    ProgressReport(const QUuid& planId, int subtype, const RunProgress& progress);

    QJsonObject reportProgress() const;
    QJsonObject reportProgress2() const;
    NVB::Common::Communication::V2::Notification::PlanProgress planProgress() const;

private:
    // The form the disk image widgets read: per disk and volume, read and
    // stored percent.
    QJsonObject diskImageProgress(qint64 bytesPerSecond) const;

    QUuid m_planId;
    int m_subtype;
    RunProgress m_progress;
};

} // namespace NVB::Engine
