#include "masterpasswordgate.h"

#include <QObject>
#include <QTimer>

#include "core/nvldebug.h"
#include "settings/checkmasterpassworddialog.h"

namespace NVB::Console {

bool MasterPasswordGate::unlock(QWidget* parent)
{
    using NVB::GUI::Settings::CheckMasterPasswordDialog;
    if (!CheckMasterPasswordDialog::isPasswordSet())
        return true;
    CheckMasterPasswordDialog dialog(parent);
    int wrong = 0;
    QObject::connect(&dialog, &CheckMasterPasswordDialog::refused, &dialog, [&dialog, &wrong] {
        if (++wrong < MaxTries)
            return;
        NVL::NvlDebug(QStringLiteral("NVB")).warning()
            << QStringLiteral("Master password refused %1 times; the console closes").arg(wrong);
        // After the error box the dialog would take another try; it must not.
        QTimer::singleShot(0, &dialog, &CheckMasterPasswordDialog::reject);
    });
    return dialog.exec() == QDialog::Accepted;
}

} // namespace NVB::Console
