#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

#include "webinterface.h"
#include "webserver.h"

namespace NVB {
class DefaultSettings;
}

namespace NVB::Engine {

class Engine;

// Opens and closes the web interface's ports as the default settings say:
// "WebAccessEnabled" with "WebAccessPort" for HTTP, "WebAccessUseHttps" with
// "WebAccessHttpsPort" for HTTPS. Nothing listens while no master password is
// set, since it is the only way in.
class WebAccess : public QObject
{
    Q_OBJECT

public:
    // `dataFolder` keeps the HTTPS certificate. NVB_WEB_ADDRESS, when set,
    // narrows listening to one address (tests keep to 127.0.0.1).
    WebAccess(Engine* engine, NVB::DefaultSettings* settings, const QString& dataFolder, QObject* parent = nullptr);

    // Brings the ports in line with the settings.
    void apply();
    quint16 httpPort() const { return m_http.port(); }
    quint16 httpsPort() const { return m_https.port(); }

public slots:
    void onSettingsChanged(const QStringList& keys);

private:
    void open(WebServer& server, bool wanted, const QString& portText, bool secure);

    NVB::DefaultSettings* m_settings;
    QString m_dataFolder;
    QString m_address;
    WebInterface m_interface;
    WebServer m_http;
    WebServer m_https;
    QString m_password;
};

} // namespace NVB::Engine
