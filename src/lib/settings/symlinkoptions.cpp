#include "settings/symlinkoptions.h"

#include <QButtonGroup>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "core/nvldebug.h"
#include "stores/defaultsettings.h"

namespace NVB::GUI::Settings {

SymlinkOptions::SymlinkOptions(QWidget* parent)
    : QWidget(parent)
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_group = new QButtonGroup(this);
    auto* group = m_group;
    const QStringList texts = {tr("Back up original files in their original locations and symlinks"),
        tr("Back up original files in their original locations"), tr("Back up original files instead of symlinks"),
        tr("Back up symlinks only"), tr("Do not back up symlinks")};
    for (int i = 0; i < texts.size(); ++i) {
        auto* button = new QRadioButton(texts.at(i), this);
        group->addButton(button, i);
        layout->addWidget(button);
        m_buttons.append(button);
        connect(button, &QRadioButton::toggled, this, [this, i](bool checked) { onToggled(i, checked); });
    }
    loadSettings();
}

void SymlinkOptions::loadSettings()
{
    bool ok = false;
    const int index = DefaultSettings::instance()->getBackupSymlink().toInt(&ok);
    // An exclusive group cannot be emptied; a stored value we do not know
    // must show no choice rather than a wrong one.
    m_group->setExclusive(false);
    for (int i = 0; i < m_buttons.size(); ++i) {
        const QSignalBlocker blocker(m_buttons.at(i));
        m_buttons.at(i)->setChecked(ok && i == index);
    }
    m_group->setExclusive(true);
}

void SymlinkOptions::onToggled(int index, bool checked)
{
    // The button losing its check reports too; only the new choice writes.
    if (!checked)
        return;
    if (!DefaultSettings::instance()->setBackupSymlink(QString::number(index)))
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << QStringLiteral("Cannot store the symlink choice");
}

} // namespace NVB::GUI::Settings
