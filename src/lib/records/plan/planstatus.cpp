#include "planstatus.h"

#include <QCoreApplication>

namespace NVB::Info::Plan {

PlanStatus::PlanStatus(int value)
    : m_value(value)
{ }

PlanStatus::PlanStatus(Value value)
    : m_value(value)
{ }

QString PlanStatus::displayName() const
{
    const char* text = nullptr;
    switch (m_value) {
    case Running:
        text = QT_TRANSLATE_NOOP("NVB::Info::Plan::PlanStatus", "Running");
        break;
    case Idle:
        text = QT_TRANSLATE_NOOP("NVB::Info::Plan::PlanStatus", "Idle");
        break;
    case Stopping:
        text = QT_TRANSLATE_NOOP("NVB::Info::Plan::PlanStatus", "Stopping");
        break;
    case Disabled:
        text = QT_TRANSLATE_NOOP("NVB::Info::Plan::PlanStatus", "Disabled");
        break;
    default:
        text = QT_TRANSLATE_NOOP("NVB::Info::Plan::PlanStatus", "Unknown");
        break;
    }
    return QCoreApplication::translate("NVB::Info::Plan::PlanStatus", text);
}

} // namespace NVB::Info::Plan
