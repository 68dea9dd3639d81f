#include "webaccess.h"

#include "core/nvldebug.h"
#include "stores/defaultsettings.h"
#include "webcertificate.h"

namespace NVB::Engine {

namespace {

NVL::NvlDebugStream log(bool warning)
{
    NVL::NvlDebug debug(QStringLiteral("NVB"));
    return warning ? debug.warning() : debug.info();
}

bool isOn(const QString& value)
{
    return value.trimmed().compare(QLatin1String("true"), Qt::CaseInsensitive) == 0;
}

} // namespace

WebAccess::WebAccess(Engine* engine, NVB::DefaultSettings* settings, const QString& dataFolder, QObject* parent)
    : QObject(parent)
    , m_settings(settings)
    , m_dataFolder(dataFolder)
    , m_address(qEnvironmentVariable("NVB_WEB_ADDRESS"))
    , m_interface(engine, [settings] { return settings->getMasterPassword(); })
    , m_http([this](const WebRequest& request) { return m_interface.answer(request, m_https.port()); })
    , m_https([this](const WebRequest& request) { return m_interface.answer(request, m_https.port()); })
{ }

void WebAccess::onSettingsChanged(const QStringList& keys)
{
    static const QStringList watched {QStringLiteral("WebAccessEnabled"), QStringLiteral("WebAccessPort"),
        QStringLiteral("WebAccessUseHttps"), QStringLiteral("WebAccessHttpsPort"), QStringLiteral("MasterPassword")};
    for (const QString& key : keys) {
        if (watched.contains(key)) {
            apply();
            return;
        }
    }
}

void WebAccess::apply()
{
    const bool http = isOn(m_settings->getWebAccessUseHttp());
    const bool https = isOn(m_settings->getWebAccessUseHttps());
    const QString password = m_settings->getMasterPassword();
    if (password != m_password) {
        // A new password ends every session the old one opened.
        m_interface.sessions().clear();
        m_password = password;
    }
    if (password.isEmpty() && (http || https)) {
        log(true) << QStringLiteral("Web access stays off: it needs a master password, and none is set. Set one "
                                    "in the console's settings, on the Application page.");
    }
    // Closing first frees a port that the other protocol is moving to.
    if (!http || password.isEmpty())
        open(m_http, false, {}, false);
    if (!https || password.isEmpty())
        open(m_https, false, {}, true);
    open(m_http, http && !password.isEmpty(), m_settings->getWebAccessHttpPort(), false);
    open(m_https, https && !password.isEmpty(), m_settings->getWebAccessHttpsPort(), true);
}

void WebAccess::open(WebServer& server, bool wanted, const QString& portText, bool secure)
{
    const QString protocol = secure ? QStringLiteral("HTTPS") : QStringLiteral("HTTP");
    if (!wanted) {
        if (server.isListening()) {
            log(false) << QStringLiteral("Web access over %1 closed port %2").arg(protocol).arg(server.port());
            server.stop();
        }
        return;
    }
    bool ok = false;
    const int port = portText.trimmed().toInt(&ok);
    if (!ok || port <= 0 || port > 65535) {
        server.stop();
        log(true) << QStringLiteral("Web access over %1 stays off: \"%2\" is no port between 1 and 65535")
                         .arg(protocol, portText);
        return;
    }
    if (server.isListening() && server.port() == port)
        return;
    QByteArray certificate;
    QByteArray key;
    QString error;
    if (secure && !WebCertificate::ensure(m_dataFolder, &certificate, &key, &error)) {
        server.stop();
        log(true) << QStringLiteral("Web access over HTTPS stays off: %1").arg(error);
        return;
    }
    if (!server.start(m_address, quint16(port), certificate, key, &error)) {
        log(true) << QStringLiteral("Web access over %1 stays off: %2").arg(protocol, error);
        return;
    }
    log(false) << QStringLiteral("Web access over %1 listens on port %2").arg(protocol).arg(port);
}

} // namespace NVB::Engine
