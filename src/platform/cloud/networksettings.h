#pragma once

#include <QString>
#include <QtGlobal>

namespace NVL::Cloud {

// What the default settings say about network transfers, read from the
// settings file at the moment of a transfer so that a change made in the
// console applies to the next request without a restart.
struct NetworkSettings
{
    enum class ProxyType { None, System, Http, Socks5 };

    ProxyType proxyType = ProxyType::System;
    QString proxyHost;
    int proxyPort = 0;
    QString proxyUser;
    QString proxyPassword; // deciphered
    // Bytes per second, 0 for no limit: one figure for both directions.
    qint64 bandwidth = 0;
    bool ignoreSslErrors = false;

    static NetworkSettings current();
    // The proxy as libcurl takes it ("socks5h://host:port"), or empty for
    // none; ProxyType::System leaves the choice to the environment.
    QString proxyUrl() const;
    // Why no request may go out: a manual proxy without a host or a valid
    // port. Going around a proxy the user asked for would be worse than failing.
    QString proxyProblem(bool accountUsesProxy) const;

    // Sets the proxy and upload speed options of a libcurl easy handle. The
    // account's own switch decides whether its transfers use a proxy at all;
    // its own speed limit, when lower, wins.
    void applyTo(void* curl, bool accountUsesProxy, qint64 sendLimit) const;
    // Bytes per second a download may take (0: no limit), the lower of the
    // account's own limit and the setting.
    qint64 receiveLimit(qint64 accountLimit) const;
};

} // namespace NVL::Cloud
