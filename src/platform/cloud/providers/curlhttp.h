#pragma once

#include <QMap>
#include <QVariant>

#include <memory>

#include "cloud/canceltoken.h"
#include "httpexchange.h"

namespace NVL::Cloud {

// Blocking HTTP(S) for the object-store clients, over libcurl. One instance
// keeps one connection alive across its requests; it is made and used on one
// worker thread. TLS is verified by the system's authorities, and a server
// they refuse is accepted only when its leaf certificate is pinned for that
// very host:port (CertificatePins), decided inside the handshake of the
// connection that carries the request.
class CurlHttp
{
public:
    struct Options
    {
        // Seconds for connecting, and for a stall: less than one byte a second
        // for this long ends the request.
        int timeoutSeconds = 30;
        // Use the proxy of the default settings (the environment's,
        // http_proxy and https_proxy, unless one is set there); without it,
        // no proxy at all. The settings' cloud bandwidth and ignore-SSL apply
        // to every request.
        bool useProxy = false;
        // Bytes per second, 0 for no limit.
        qint64 maxSendSpeed = 0;
        qint64 maxReceiveSpeed = 0;
    };

    // The options an account's configuration asks for: its time limit (30 s
    // when it names none) and whether it goes through the proxy.
    static Options optionsFor(const QMap<QString, QVariant>& config);

    explicit CurlHttp(const Options& options);
    ~CurlHttp();
    CurlHttp(const CurlHttp&) = delete;
    CurlHttp& operator=(const CurlHttp&) = delete;

    // Fills the answer part of exchange. False on a transport failure
    // (curlCode and transportError set); an HTTP error status is true.
    bool perform(HttpExchange& exchange, const CancelToken& cancel);

private:
    struct Handle;
    std::unique_ptr<Handle> m_handle;
    Options m_options;
};

} // namespace NVL::Cloud
