#pragma once

#include <functional>
#include <memory>

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QTimer>

#include "webexchange.h"

class QSocketNotifier;
struct MHD_Daemon;
struct MHD_Connection;

namespace NVB::Engine {

// One listening port of the web interface, served by libmicrohttpd on the
// engine's own thread: the daemon's epoll descriptor is watched by the event
// loop, so handlers may use the engine directly and no request runs while a
// run's state changes under it. Stopping closes the port at once.
class WebServer : public QObject
{
    Q_OBJECT

public:
    using Handler = std::function<WebResponse(const WebRequest&)>;

    explicit WebServer(Handler handler, QObject* parent = nullptr);
    ~WebServer() override;

    // Listens on `port` of `address` (empty: every address, IPv4 and IPv6);
    // with a certificate and key (PEM) it speaks HTTPS only.
    bool start(const QString& address, quint16 port, const QByteArray& certificatePem, const QByteArray& keyPem,
        QString* error);
    void stop();
    bool isListening() const { return m_daemon != nullptr; }
    quint16 port() const { return m_port; }
    bool isSecure() const { return m_secure; }

    // Requests larger than this are refused (logins and commands are small).
    static constexpr int MaxBody = 64 * 1024;

    // For the daemon's callback: the request of `connection` in full.
    WebResponse handle(MHD_Connection* connection, const char* url, const char* method, const QByteArray& body);

private:
    void poll();

    Handler m_handler;
    MHD_Daemon* m_daemon = nullptr;
    std::unique_ptr<QSocketNotifier> m_notifier;
    QTimer m_timer;
    quint16 m_port = 0;
    bool m_secure = false;
    QByteArray m_certificate;
    QByteArray m_key;
};

} // namespace NVB::Engine
