#include "planresult.h"

#include <QCoreApplication>

namespace NVB::Info::Plan {

namespace {

const char* resultText(int value)
{
    switch (value) {
    case PlanResult::NoResult:
        return QT_TRANSLATE_NOOP("NVB::Info::Plan::PlanResult", "Unknown");
    case PlanResult::NotStarted:
        return QT_TRANSLATE_NOOP("NVB::Info::Plan::PlanResult", "Not started");
    case PlanResult::Running:
        return QT_TRANSLATE_NOOP("NVB::Info::Plan::PlanResult", "Running");
    case PlanResult::Completed:
        return QT_TRANSLATE_NOOP("NVB::Info::Plan::PlanResult", "Completed");
    case PlanResult::Starting:
        return QT_TRANSLATE_NOOP("NVB::Info::Plan::PlanResult", "Starting");
    case PlanResult::Stopping:
        return QT_TRANSLATE_NOOP("NVB::Info::Plan::PlanResult", "Stopping");
    case PlanResult::Interrupted:
        return QT_TRANSLATE_NOOP("NVB::Info::Plan::PlanResult", "Interrupted");
    case PlanResult::Success:
        return QT_TRANSLATE_NOOP("NVB::Info::Plan::PlanResult", "Success");
    case PlanResult::Warning:
        return QT_TRANSLATE_NOOP("NVB::Info::Plan::PlanResult", "Warning");
    case PlanResult::Failed:
        return QT_TRANSLATE_NOOP("NVB::Info::Plan::PlanResult", "Failed");
    case PlanResult::Queued:
        return QT_TRANSLATE_NOOP("NVB::Info::Plan::PlanResult", "Queued");
    case PlanResult::Missed:
        return QT_TRANSLATE_NOOP("NVB::Info::Plan::PlanResult", "Missed");
    case PlanResult::Skipped:
        return QT_TRANSLATE_NOOP("NVB::Info::Plan::PlanResult", "Skipped");
    case PlanResult::Canceled:
        return QT_TRANSLATE_NOOP("NVB::Info::Plan::PlanResult", "Canceled");
    case PlanResult::Deferred:
        return QT_TRANSLATE_NOOP("NVB::Info::Plan::PlanResult", "Deferred");
    case PlanResult::Synchronizing:
        return QT_TRANSLATE_NOOP("NVB::Info::Plan::PlanResult", "Synchronizing");
    case PlanResult::CheckingConsistency:
        return QT_TRANSLATE_NOOP("NVB::Info::Plan::PlanResult", "Checking consistency");
    case PlanResult::Purging:
        return QT_TRANSLATE_NOOP("NVB::Info::Plan::PlanResult", "Purging");
    default:
        return nullptr;
    }
}

} // namespace

PlanResult::PlanResult(int value)
    : m_value(value)
{ }

PlanResult::PlanResult(Value value)
    : m_value(value)
{ }

bool PlanResult::isKnown() const
{
    return resultText(m_value) != nullptr;
}

QString PlanResult::displayName() const
{
    const char* text = resultText(m_value);
    return QCoreApplication::translate("NVB::Info::Plan::PlanResult", text ? text : resultText(NoResult));
}

} // namespace NVB::Info::Plan
