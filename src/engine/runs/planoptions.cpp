#include "planoptions.h"

#include "records/plan/backup.h"
#include "records/plan/backupencyption.h"
#include "records/plan/backupfile.h"

namespace NVB::Engine {

QString PlanOptions::unperformed(const NVB::Info::Plan::Backup& plan)
{
    // AES in every key length is performed; the DES family isn't offered
    // by the wizard and is not carried out.
    if (plan.encryption().isEnabled() && plan.encryption().encryptionType() > NVB::Info::Plan::BackupEncyption::AES256)
        return QStringLiteral("encryption with %1").arg(
            NVB::Info::Plan::BackupEncyption::typeToStr(plan.encryption().encryptionType()));
    if (plan.encryption().isEnabled() && plan.encryption().password().isEmpty())
        return QStringLiteral("encryption without a password");
    const auto& retention = plan.retentionPolicy();
    // The legacy format's retention is carried out after each run; the new
    // format's purges whole generations, which this path does not.
    if (plan.isArchive() && (retention.useDeleteOlder() || retention.useKeepVersion() || retention.useDeleteLocaly()))
        return QStringLiteral("retention policy");
    if (plan.forceFullSchedule().isEnable())
        return QStringLiteral("scheduled full backup");
    if (plan.forceFullDiffSizeConditionEnable())
        return QStringLiteral("full backup when the changes exceed a size");
    // Block-level upload only saves transfer: whole files make the same
    // restore point, so a plan asking for it runs with whole files.
    if (plan.actions().pre().isEnabled())
        return QStringLiteral("action before the backup");
    if (plan.actions().post().isEnabled())
        return QStringLiteral("action after the backup");
    // The consistency check is honoured by every run: an earlier copy is
    // reused only after it is found on the storage with its recorded size.
    if (plan.syncBeforeRun())
        return QStringLiteral("repository synchronisation before the run");
    return {};
}

} // namespace NVB::Engine
