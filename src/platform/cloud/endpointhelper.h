#pragma once

#include <QPair>
#include <QString>

namespace NVL::Utitlity {

// Reads an endpoint the way a user types it: "host", "host:port",
// "http://host/path" or "https://host:port/path". A scheme decides the SSL
// flag; without one the flag given by the caller stands.
class EndpointHelper
{
public:
    EndpointHelper(const QString& endpoint, bool useSsl);

    bool hasError() const { return !m_error.isEmpty(); }
    QString lastErrorMessage() const { return m_error; }

    bool useSsl() const { return m_useSsl; }
    void setUseSsl(bool useSsl) { m_useSsl = useSsl; }

    // "host[:port][/path]", no scheme, no trailing slash.
    QString endpoint() const { return m_endpoint; }
    // The endpoint with "https://" or "http://" as the SSL flag says.
    QString endpointWithScheme() const;

    // The endpoint without its scheme and the SSL flag its scheme gives (true
    // when it has none). Text that cannot be read comes back trimmed, unchanged.
    static QPair<QString, bool> toPair(const QString& endpoint);
    static QString toEndpoint(const QString& endpoint);
    // A stored endpoint ready for an edit: one with a scheme stays as it is,
    // a bare one gets the scheme of the flag; empty stays empty.
    static QString toEndpointWithScheme(const QString& endpoint, bool useSsl);

private:
    void parse(const QString& text);

    QString m_endpoint;
    QString m_error;
    bool m_useSsl;
};

} // namespace NVL::Utitlity
