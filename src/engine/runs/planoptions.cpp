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
    // The new format's runs leave files in use to the copy as they find them.
    const auto* file = dynamic_cast<const NVB::Info::Plan::BackupFile*>(&plan);
    if (plan.isArchive() && file && file->skipInUseFiles())
        return QStringLiteral("skipping files in use in the new backup format");
    // Scheduled full backups and the size condition start a new generation;
    // pre and post actions run around the work (actions/planactions).
    // Block-level upload stores changed files as increments against their
    // full versions (blocks/).
    // The consistency check is honoured by every run: an earlier copy is
    // reused only after it is found on the storage with its recorded size.
    if (plan.syncBeforeRun())
        return QStringLiteral("repository synchronisation before the run");
    return {};
}

} // namespace NVB::Engine
