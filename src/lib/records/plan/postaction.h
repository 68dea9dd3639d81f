#pragma once

#include "records/plan/action.h"

namespace NVB::Info::Plan {

// The command run after a backup.
class PostAction : public Action
{
public:
    bool runOnBackupFailure() const { return m_runOnBackupFailure; }
    void setRunOnBackupFailure(bool run) { m_runOnBackupFailure = run; }

    void writeXml(QDomElement& parent) const override;
    void readXml(const QDomElement& element) override;

private:
    bool m_runOnBackupFailure = false;
};

} // namespace NVB::Info::Plan
