#pragma once

#include <QString>

namespace NVB::Info::Plan {
class Backup;
}

namespace NVB::Engine {

// What a backup plan may ask for that this engine does not carry out yet.
// Such a plan fails at once rather than run and be recorded with a property
// its data lacks (an "encrypted" point holding plain copies).
class PlanOptions
{
public:
    // The first such option by the name the user knows it by; empty when the
    // engine does all the plan asks.
    static QString unperformed(const NVB::Info::Plan::Backup& plan);
};

} // namespace NVB::Engine
