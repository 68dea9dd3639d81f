#include "planoptions.h"

#include "records/plan/backup.h"
#include "records/plan/backupencyption.h"
#include "records/plan/backupfile.h"

namespace NVB::Engine {

QString PlanOptions::unperformed(const NVB::Info::Plan::Backup& plan)
{
    if (plan.encryption().isEnabled())
        return QStringLiteral("encryption");
    const auto& retention = plan.retentionPolicy();
    // Keeping the last version needs nothing done: this engine deletes
    // nothing. Anything that deletes is a retention policy it cannot honour.
    if (retention.useDeleteOlder() || retention.useKeepVersion() || retention.useDeleteLocaly())
        return QStringLiteral("retention policy");
    // Scheduled full backups and the size condition start a new generation;
    // pre and post actions run around the work (actions/planactions).
    // Block-level upload only saves transfer: whole files make the same
    // restore point, so a plan asking for it runs with whole files.
    // The consistency check is honoured by every run: an earlier copy is
    // reused only after it is found on the storage with its recorded size.
    if (plan.syncBeforeRun())
        return QStringLiteral("repository synchronisation before the run");
    if (const auto* file = dynamic_cast<const NVB::Info::Plan::BackupFile*>(&plan)) {
        if (file->skipInUseFiles())
            return QStringLiteral("skip in-use files");
    }
    return {};
}

} // namespace NVB::Engine
