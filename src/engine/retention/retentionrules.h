#pragma once

namespace NVB {
class DefaultSettings;
}

namespace NVB::Info::Plan {
class Backup;
}

namespace NVB::Engine {

// What a legacy plan's retention asks, in days and counts, with the global
// defaults already put in for a plan that follows them.
struct RetentionRules
{
    // Versions older than this many days go; -1: no age limit.
    int ageDays = -1;
    // The age counts from the run that stored a version, not from the
    // file's modification time.
    bool useBackupDate = false;
    // The newest version of a file stays whatever its age.
    bool keepLast = true;
    // Only this many versions of a file stay; 0: no limit.
    int keepVersions = 0;
    // A file gone from the source this many days loses every version; -1:
    // never.
    int deleteLocalyDays = -1;

    bool isEmpty() const { return ageDays < 0 && keepVersions <= 0 && deleteLocalyDays < 0; }

    static RetentionRules fromPlan(const NVB::Info::Plan::Backup& plan, const NVB::DefaultSettings* defaults);
};

} // namespace NVB::Engine
