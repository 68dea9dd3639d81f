#include "settings/license.h"

#include <QFormLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "app/application.h"
#include "core/defines.h"
#include "core/licenserestrictions.h"
#include "settings/sectionline.h"

namespace NVB::GUI::Settings {

using ::NVB::License::LicenseRestrictions;

License::License(QWidget* parent)
    : QWidget(parent)
    , m_edition(new QLabel(this))
    , m_allows(new QLabel(this))
    , m_source(new QLabel(this))
{
    setWindowTitle(tr("License"));
    m_edition->setObjectName(QStringLiteral("edition"));
    m_allows->setObjectName(QStringLiteral("allows"));
    m_allows->setWordWrap(true);
    m_source->setWordWrap(true);
    m_source->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* form = new QFormLayout;
    form->addRow(tr("Edition:"), m_edition);
    form->addRow(tr("Includes:"), m_allows);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new SectionLine(tr("License"), this));
    layout->addLayout(form);
    layout->addWidget(m_source);
    layout->addStretch(1);
    loadSettings();
}

void License::loadSettings()
{
    const bool free = LicenseRestrictions::isFreeEdition();
    m_edition->setText(free ? tr("Free edition") : tr("Full edition"));
    QStringList lines;
    const auto line = [&lines](bool available, const QString& what) {
        lines << (available ? tr("%1: yes") : tr("%1: not in this edition")).arg(what);
    };
    line(LicenseRestrictions::isCompressionAvailable(), tr("Compression"));
    line(LicenseRestrictions::isEncryptionAvailable(), tr("Encryption"));
    line(LicenseRestrictions::isPrePostActionsAvailable(), tr("Pre and post actions"));
    line(LicenseRestrictions::isNotificationsAvailable(), tr("Notification mail"));
    const int shares = LicenseRestrictions::networkShareLimit();
    lines << (shares < 0 ? tr("Network shares: no limit") : tr("Network shares: %n in all plans", nullptr, shares));
    m_allows->setText(lines.join(QLatin1Char('\n')));
    m_source->setText(tr("<small>The edition is set by the attribute \"license\" of %1 (\"free\" for the free "
                         "edition). This installation checks no licence codes: there is nothing to activate "
                         "here.</small>")
                          .arg(SHARED::defines::Path::ETC::CONFIG::nvbBackup_conf().toHtmlEscaped()));
}

} // namespace NVB::GUI::Settings
