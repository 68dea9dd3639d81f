#include "settings/backup.h"

#include <QVBoxLayout>

#include "settings/retentionpolicy.h"
#include "settings/sectionline.h"
#include "settings/symlinkoptions.h"

namespace NVB::GUI::Settings {

Backup::Backup(QWidget* parent)
    : QWidget(parent)
    , m_symlinks(new SymlinkOptions(this))
    , m_retention(new RetentionPolicy(this))
{
    setWindowTitle(tr("Backup"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new SectionLine(tr("Backup symlinks"), this));
    layout->addWidget(m_symlinks);
    layout->addWidget(new SectionLine(tr("Retention policy"), this));
    layout->addWidget(m_retention);
    layout->addStretch(1);
}

void Backup::loadSettings()
{
    m_symlinks->loadSettings();
    m_retention->loadSettings();
}

} // namespace NVB::GUI::Settings
