#include "wizards/backup/installsnapshotdriverdialog.h"

#include <QDialogButtonBox>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QStandardPaths>
#include <QVBoxLayout>

namespace NVB::GUI {

InstallSnapshotDriverDialog::InstallSnapshotDriverDialog(QWidget* parent)
    : QDialog(parent)
    , m_state(new QLabel(this))
{
    setWindowTitle(tr("Snapshot driver"));
    auto* text = new QLabel(tr("Snapshots are taken with LVM, for volumes that are LVM logical volumes. Install the "
                               "\"lvm2\" package with the system's package manager (as root: apt-get install lvm2), "
                               "then check again."),
        this);
    text->setWordWrap(true);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    QPushButton* again = buttons->addButton(tr("Check again"), QDialogButtonBox::ActionRole);
    again->setObjectName(QStringLiteral("checkAgain"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(text);
    layout->addWidget(m_state);
    layout->addWidget(buttons);
    connect(again, &QPushButton::clicked, this, &InstallSnapshotDriverDialog::check);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

bool InstallSnapshotDriverDialog::CheckInstall(const QString& miscDevices, const QString& path)
{
    const QStringList paths = path.isEmpty() ? QStringList() : path.split(QLatin1Char(':'));
    const bool tools = !QStandardPaths::findExecutable(QStringLiteral("lvcreate"), paths).isEmpty()
        && !QStandardPaths::findExecutable(QStringLiteral("lvremove"), paths).isEmpty();
    // A /dev/mapper/control node may exist without the driver behind it
    // (containers); the kernel's own list of misc devices tells.
    QFile misc(miscDevices);
    return tools && misc.open(QIODevice::ReadOnly) && misc.readAll().contains(" device-mapper\n");
}

void InstallSnapshotDriverDialog::check()
{
    if (CheckInstall()) {
        accept();
        return;
    }
    m_state->setText(tr("LVM snapshots are still not available on this machine."));
    m_state->setStyleSheet(QStringLiteral("color: #c62828;"));
}

} // namespace NVB::GUI
