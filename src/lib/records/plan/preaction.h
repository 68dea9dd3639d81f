#pragma once

#include "records/plan/action.h"

namespace NVB::Info::Plan {

// The command run before a backup.
class PreAction : public Action
{
public:
    bool terminateOnFailure() const { return m_terminateOnFailure; }
    void setTerminateOnFailure(bool terminate) { m_terminateOnFailure = terminate; }

    void writeXml(QDomElement& parent) const override;
    void readXml(const QDomElement& element) override;

private:
    bool m_terminateOnFailure = true;
};

} // namespace NVB::Info::Plan
