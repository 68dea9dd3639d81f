#include "settings/network.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QToolButton>
#include <QVBoxLayout>

#include "app/application.h"
#include "core/nvldebug.h"
#include "settings/bandwidth.h"
#include "settings/connectionoptions.h"
#include "settings/proxy.h"
#include "settings/sectionline.h"
#include "settings/ssltrustedstoragedialog.h"
#include "stores/defaultsettings.h"

namespace NVB::GUI::Settings {

Network::Network(QWidget* parent)
    : QWidget(parent)
    , m_proxy(new Proxy(this))
    , m_bandwidth(new Bandwidth(this))
    , m_connection(new ConnectionOptions(this))
{
    setWindowTitle(tr("Network"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new SectionLine(tr("General"), this));
    layout->addWidget(m_proxy);
    if (NVB::GUI::Application::isStandalon()) {
        auto* row = new QHBoxLayout();
        m_ignoreSsl = new QCheckBox(tr("Ignore SSL certificates"), this);
        m_sslCertificates = new QToolButton(this);
        m_sslCertificates->setIcon(QIcon(QStringLiteral(":/images/settings.svg")));
        m_sslCertificates->setToolTip(tr("Manage SSL certificates"));
        row->addWidget(m_ignoreSsl);
        row->addWidget(m_sslCertificates);
        row->addStretch(1);
        layout->addLayout(row);
        connect(m_ignoreSsl, &QCheckBox::clicked, this, &Network::saveSettings);
        connect(m_sslCertificates, &QToolButton::clicked, this, &Network::onViewSslCertificates);
    }
    layout->addWidget(new SectionLine(tr("Bandwidth"), this));
    layout->addWidget(m_bandwidth);
    layout->addWidget(new SectionLine(tr("Connection options"), this));
    layout->addWidget(m_connection);
    layout->addStretch(1);
    loadSettings();
}

void Network::loadSettings()
{
    if (m_ignoreSsl)
        m_ignoreSsl->setChecked(DefaultSettings::instance()->getIgnoreSSL().toCaseFolded() == QLatin1String("true"));
    m_bandwidth->loadSettings();
    m_proxy->loadSettings();
    m_connection->loadSettings();
}

void Network::saveSettings()
{
    if (!m_ignoreSsl)
        return;
    // The engine reads this key on its next transfer; it never reaches a
    // connection of the console itself.
    const QString text = m_ignoreSsl->isChecked() ? tr("true") : tr("false");
    if (!DefaultSettings::instance()->setIgnoreSSL(text))
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << QStringLiteral("Cannot store the SSL setting");
}

void Network::onViewSslCertificates()
{
    SslTrustedStorageDialog(this).exec();
}

} // namespace NVB::GUI::Settings
