#pragma once

#include <QDialog>

class QLabel;

namespace NVB::GUI {

// Snapshots of volumes come from LVM: a logical volume is frozen by an LVM
// snapshot while it is imaged. This dialog tells whether the machine can
// take them and what to install when it cannot; it is accepted once the
// check passes.
class InstallSnapshotDriverDialog : public QDialog
{
    Q_OBJECT
public:
    explicit InstallSnapshotDriverDialog(QWidget* parent = nullptr);

    // True when the LVM tools are there and the kernel offers the
    // device-mapper that LVM snapshots need. `miscDevices` and `path` are
    // for tests.
    static bool CheckInstall(
        const QString& miscDevices = QStringLiteral("/proc/misc"), const QString& path = QString());

private:
    void check();

    QLabel* m_state;
};

} // namespace NVB::GUI
