#include "webserver.h"

#include <cstring>

#include <arpa/inet.h>
#include <microhttpd.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <QHostAddress>
#include <QSocketNotifier>

namespace NVB::Engine {

namespace {

// What arrives of one request before it is answered.
struct Pending
{
    QByteArray body;
    bool tooLarge = false;
};

MHD_Result collectValue(void* cls, MHD_ValueKind, const char* key, const char* value)
{
    auto* map = static_cast<QMap<QByteArray, QByteArray>*>(cls);
    if (key)
        map->insert(QByteArray(key).toLower(), QByteArray(value ? value : ""));
    return MHD_YES;
}

MHD_Result collectArgument(void* cls, MHD_ValueKind, const char* key, const char* value)
{
    auto* map = static_cast<QMap<QString, QString>*>(cls);
    if (key)
        map->insert(QString::fromUtf8(key), QString::fromUtf8(value ? value : ""));
    return MHD_YES;
}

MHD_Result queue(MHD_Connection* connection, const WebResponse& response)
{
    MHD_Response* reply = MHD_create_response_from_buffer(
        size_t(response.body.size()), const_cast<char*>(response.body.constData()), MHD_RESPMEM_MUST_COPY);
    if (!reply)
        return MHD_NO;
    MHD_add_response_header(reply, MHD_HTTP_HEADER_CONTENT_TYPE, response.contentType.constData());
    // Nothing of the interface may be kept or framed by another site.
    MHD_add_response_header(reply, MHD_HTTP_HEADER_CACHE_CONTROL, "no-store");
    MHD_add_response_header(reply, "X-Frame-Options", "DENY");
    MHD_add_response_header(reply, "X-Content-Type-Options", "nosniff");
    for (const auto& header : response.headers)
        MHD_add_response_header(reply, header.first.constData(), header.second.constData());
    const MHD_Result result = MHD_queue_response(connection, unsigned(response.status), reply);
    MHD_destroy_response(reply);
    return result;
}

MHD_Result onAccess(void* cls, MHD_Connection* connection, const char* url, const char* method, const char*,
    const char* upload, size_t* uploadSize, void** context)
{
    auto* pending = static_cast<Pending*>(*context);
    if (!pending) {
        *context = new Pending;
        return MHD_YES;
    }
    if (*uploadSize != 0) {
        if (pending->body.size() + qint64(*uploadSize) > WebServer::MaxBody)
            pending->tooLarge = true;
        else
            pending->body.append(upload, int(*uploadSize));
        *uploadSize = 0;
        return MHD_YES;
    }
    if (pending->tooLarge) {
        WebResponse refused;
        refused.status = MHD_HTTP_CONTENT_TOO_LARGE;
        refused.contentType = QByteArrayLiteral("text/plain; charset=utf-8");
        refused.body = QByteArrayLiteral("The request is too large.");
        return queue(connection, refused);
    }
    return queue(connection, static_cast<WebServer*>(cls)->handle(connection, url, method, pending->body));
}

void onCompleted(void*, MHD_Connection*, void** context, MHD_RequestTerminationCode)
{
    delete static_cast<Pending*>(*context);
    *context = nullptr;
}

} // namespace

WebServer::WebServer(Handler handler, QObject* parent)
    : QObject(parent)
    , m_handler(std::move(handler))
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &WebServer::poll);
}

WebServer::~WebServer()
{
    stop();
}

bool WebServer::start(
    const QString& address, quint16 port, const QByteArray& certificatePem, const QByteArray& keyPem, QString* error)
{
    stop();
    m_secure = !certificatePem.isEmpty();
    // The daemon keeps pointers to the PEM texts for its whole life.
    m_certificate = certificatePem;
    m_key = keyPem;
    unsigned int flags = MHD_USE_EPOLL;
    if (m_secure)
        flags |= MHD_USE_TLS;

    sockaddr_in v4 {};
    sockaddr_in6 v6 {};
    const sockaddr* bind = nullptr;
    const QHostAddress host(address);
    if (address.isEmpty()) {
        flags |= MHD_USE_DUAL_STACK;
    } else if (host.protocol() == QAbstractSocket::IPv4Protocol) {
        v4.sin_family = AF_INET;
        v4.sin_port = htons(port);
        v4.sin_addr.s_addr = htonl(host.toIPv4Address());
        bind = reinterpret_cast<const sockaddr*>(&v4);
    } else if (host.protocol() == QAbstractSocket::IPv6Protocol) {
        flags |= MHD_USE_IPv6;
        v6.sin6_family = AF_INET6;
        v6.sin6_port = htons(port);
        const Q_IPV6ADDR bytes = host.toIPv6Address();
        std::memcpy(&v6.sin6_addr, &bytes, sizeof bytes);
        bind = reinterpret_cast<const sockaddr*>(&v6);
    } else {
        *error = QStringLiteral("\"%1\" is no address to listen on").arg(address);
        return false;
    }

    MHD_OptionItem options[8];
    int count = 0;
    options[count++] = {MHD_OPTION_NOTIFY_COMPLETED, intptr_t(&onCompleted), nullptr};
    options[count++] = {MHD_OPTION_CONNECTION_TIMEOUT, 30, nullptr};
    options[count++] = {MHD_OPTION_CONNECTION_LIMIT, 64, nullptr};
    if (bind)
        options[count++] = {MHD_OPTION_SOCK_ADDR, 0, const_cast<sockaddr*>(bind)};
    if (m_secure) {
        options[count++] = {MHD_OPTION_HTTPS_MEM_CERT, 0, const_cast<char*>(m_certificate.constData())};
        options[count++] = {MHD_OPTION_HTTPS_MEM_KEY, 0, const_cast<char*>(m_key.constData())};
    }
    options[count++] = {MHD_OPTION_END, 0, nullptr};

    errno = 0;
    m_daemon = MHD_start_daemon(flags, port, nullptr, nullptr, reinterpret_cast<MHD_AccessHandlerCallback>(&onAccess),
        this, MHD_OPTION_ARRAY, options, MHD_OPTION_END);
    if (!m_daemon) {
        const int cause = errno;
        *error = cause == EADDRINUSE ? QStringLiteral("The port %1 is already in use").arg(port)
                                     : QStringLiteral("Cannot listen on port %1: %2")
                                           .arg(port)
                                           .arg(QString::fromLocal8Bit(cause ? std::strerror(cause) : "refused"));
        return false;
    }
    m_port = port;
    const MHD_DaemonInfo* info = MHD_get_daemon_info(m_daemon, MHD_DAEMON_INFO_EPOLL_FD);
    m_notifier = std::make_unique<QSocketNotifier>(info->epoll_fd, QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &WebServer::poll);
    return true;
}

void WebServer::stop()
{
    m_timer.stop();
    m_notifier.reset();
    if (m_daemon) {
        MHD_stop_daemon(m_daemon);
        m_daemon = nullptr;
    }
    m_port = 0;
}

void WebServer::poll()
{
    if (!m_daemon)
        return;
    MHD_run(m_daemon);
    // Work the daemon holds without a descriptor event (a timeout, data
    // already read by TLS) needs another turn.
    MHD_UNSIGNED_LONG_LONG wait = 0;
    const int soon = MHD_get_timeout(m_daemon, &wait) == MHD_YES ? int(qMin<MHD_UNSIGNED_LONG_LONG>(wait, 500)) : 500;
    m_timer.start(soon);
}

WebResponse WebServer::handle(MHD_Connection* connection, const char* url, const char* method, const QByteArray& body)
{
    WebRequest request;
    request.method = QByteArray(method);
    request.path = QString::fromUtf8(url);
    request.body = body;
    request.secure = m_secure;
    MHD_get_connection_values(connection, MHD_HEADER_KIND, &collectValue, &request.headers);
    MHD_get_connection_values(connection, MHD_GET_ARGUMENT_KIND, &collectArgument, &request.query);
    const MHD_ConnectionInfo* info = MHD_get_connection_info(connection, MHD_CONNECTION_INFO_CLIENT_ADDRESS);
    if (info && info->client_addr) {
        QHostAddress peer(info->client_addr);
        bool mapped = false;
        const quint32 v4 = peer.toIPv4Address(&mapped);
        if (mapped)
            peer = QHostAddress(v4);
        request.loopback = peer.isLoopback();
    }
    return m_handler(request);
}

} // namespace NVB::Engine
