#include "settings/proxy.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QToolButton>

#include "core/nvldebug.h"
#include "settings/proxydialog.h"
#include "stores/proxydefines.h"

namespace NVB::GUI::Settings {

Proxy::Proxy(QWidget* parent)
    : QWidget(parent)
    , m_useProxy(new QCheckBox(tr("Use Web Proxy (HTTP)"), this))
    , m_change(new QToolButton(this))
{
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_change->setIcon(QIcon(QStringLiteral(":/images/settings.svg")));
    m_change->setToolTip(tr("Change proxy settings"));
    layout->addWidget(m_useProxy);
    layout->addWidget(m_change);
    layout->addStretch(1);
    connect(m_useProxy, &QCheckBox::clicked, this, &Proxy::onSetProxyCheckBoxClicked);
    connect(m_change, &QToolButton::clicked, this, &Proxy::onChangeProxyButtonClicked);
    loadSettings();
}

void Proxy::loadSettings()
{
    const bool enabled = defines::ProxyDefines::IsProxyEnabled();
    m_useProxy->setChecked(enabled);
    m_change->setEnabled(enabled);
}

void Proxy::onSetProxyCheckBoxClicked(bool checked)
{
    if (checked) {
        ProxyDialog(false, this).exec();
    } else {
        auto settings = defines::ProxyDefines::proxySettings();
        settings.enabled = false;
        if (!defines::ProxyDefines::setProxySettings(settings))
            NVL::NvlDebug(QStringLiteral("NVB")).warning() << QStringLiteral("Cannot store the proxy settings");
    }
    // A cancelled dialog leaves the proxy off, and the box must say so.
    loadSettings();
}

void Proxy::onChangeProxyButtonClicked()
{
    ProxyDialog(true, this).exec();
    loadSettings();
}

} // namespace NVB::GUI::Settings
