#include "archivebackupstatusdelegate.h"

namespace NVB::GUI {

QString ArchiveBackupStatusDelegate::toText(const QVariant& value, const QLocale&)
{
    return codeText(value, "NVB::GUI::ArchiveBackupStatusDelegate", {{0, QT_TRANSLATE_NOOP("NVB::GUI::ArchiveBackupStatusDelegate", "Incomplete")}, {1, QT_TRANSLATE_NOOP("NVB::GUI::ArchiveBackupStatusDelegate", "CompleteWithErrors")}, {2, QT_TRANSLATE_NOOP("NVB::GUI::ArchiveBackupStatusDelegate", "Succeed")}});
}

QString ArchiveBackupStatusDelegate::text(const QVariant& value, const QLocale& locale) const
{
    return toText(value, locale);
}

} // namespace NVB::GUI
