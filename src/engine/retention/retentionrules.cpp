#include "retentionrules.h"

#include "records/plan/backupfile.h"
#include "stores/defaultsettings.h"

namespace NVB::Engine {

namespace {

// "60.00:00:00": days, then a time of day that the defaults never use.
int durationDays(const QString& text)
{
    const int dot = text.indexOf(QLatin1Char('.'));
    if (dot <= 0)
        return -1;
    bool ok = false;
    const int days = text.left(dot).toInt(&ok);
    return ok && days >= 0 ? days : -1;
}

int unitDays(int unit)
{
    switch (unit) {
    case 1:
        return 7;
    case 2:
        return 30;
    case 3:
        return 365;
    default:
        return 1;
    }
}

} // namespace

RetentionRules RetentionRules::fromPlan(const NVB::Info::Plan::Backup& plan, const NVB::DefaultSettings* defaults)
{
    RetentionRules rules;
    const auto& policy = plan.retentionPolicy();
    if (policy.type() == NVB::Info::Plan::BackupRetentionPolicy::Default) {
        if (defaults) {
            rules.ageDays = durationDays(defaults->getSerializationSupportRetentionTime());
            rules.useBackupDate = defaults->getRetentionUseBackupDate() == QLatin1String("true");
            rules.keepLast = defaults->getRetentionDeleteLastVersion() != QLatin1String("true");
            const int versions = defaults->getRetentionNumberOfVersions().toInt();
            rules.keepVersions = versions > 0 ? versions : 0;
        }
    } else {
        if (policy.useDeleteOlder()) {
            const auto age = policy.deleteFileAge();
            rules.ageDays = qMax(0, age.first) * unitDays(age.second);
            rules.useBackupDate = policy.useBackupDate();
            rules.keepLast = policy.useKeepLastVersion();
        }
        if (policy.useKeepVersion())
            rules.keepVersions = qMax(1, policy.keepVersion());
    }
    // Counting from the backup date could take a file's only copy.
    if (rules.useBackupDate)
        rules.keepLast = true;
    // Deleting what was deleted locally belongs to the plan, default or not.
    const auto* file = dynamic_cast<const NVB::Info::Plan::BackupFile*>(&plan);
    if (file && policy.useDeleteLocaly())
        rules.deleteLocalyDays = qMax(0, policy.deleteLocalyAfter());
    return rules;
}

} // namespace NVB::Engine
