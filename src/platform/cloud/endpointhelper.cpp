#include "endpointhelper.h"

#include <QCoreApplication>
#include <QRegularExpression>

namespace NVL::Utitlity {

namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("NVL::Utitlity::EndpointHelper", text);
}

const QString HttpScheme = QStringLiteral("http://");
const QString HttpsScheme = QStringLiteral("https://");

} // namespace

EndpointHelper::EndpointHelper(const QString& endpoint, bool useSsl)
    : m_useSsl(useSsl)
{
    parse(endpoint.trimmed());
}

void EndpointHelper::parse(const QString& text)
{
    if (text.isEmpty()) {
        m_error = tr("Endpoint is empty");
        return;
    }

    QString rest = text;
    const int schemeEnd = rest.indexOf(QStringLiteral("://"));
    if (schemeEnd >= 0) {
        const QString scheme = rest.left(schemeEnd).toLower();
        if (scheme == QLatin1String("https"))
            m_useSsl = true;
        else if (scheme == QLatin1String("http"))
            m_useSsl = false;
        else {
            m_error = tr("Unsupported scheme \"%1\": use http or https").arg(rest.left(schemeEnd));
            return;
        }
        rest = rest.mid(schemeEnd + 3);
    }

    while (rest.endsWith(QLatin1Char('/')))
        rest.chop(1);
    if (rest.isEmpty()) {
        m_error = tr("Endpoint has no host");
        return;
    }

    const int slash = rest.indexOf(QLatin1Char('/'));
    const QString authority = slash < 0 ? rest : rest.left(slash);
    const QString path = slash < 0 ? QString() : rest.mid(slash);

    QString host = authority;
    QString port;
    if (authority.startsWith(QLatin1Char('['))) {
        const int close = authority.indexOf(QLatin1Char(']'));
        if (close < 0) {
            m_error = tr("Endpoint \"%1\" has an unclosed IPv6 address").arg(text);
            return;
        }
        host = authority.left(close + 1);
        const QString tail = authority.mid(close + 1);
        if (!tail.isEmpty()) {
            if (!tail.startsWith(QLatin1Char(':'))) {
                m_error = tr("Endpoint \"%1\" is not valid").arg(text);
                return;
            }
            port = tail.mid(1);
        }
    } else {
        const int colon = authority.indexOf(QLatin1Char(':'));
        if (colon >= 0) {
            host = authority.left(colon);
            port = authority.mid(colon + 1);
        }
    }

    static const QRegularExpression hostPattern(
        QStringLiteral("^(\\[[0-9A-Fa-f:.]+\\]|[A-Za-z0-9_]([A-Za-z0-9_.-]*[A-Za-z0-9_])?)$"));
    if (host.isEmpty() || !hostPattern.match(host).hasMatch() || host.contains(QStringLiteral(".."))) {
        m_error = tr("Endpoint host \"%1\" is not valid").arg(host);
        return;
    }
    if (authority.contains(QLatin1Char(':')) && !authority.startsWith(QLatin1Char('[')) && port.isEmpty()) {
        m_error = tr("Endpoint \"%1\" has an empty port").arg(text);
        return;
    }
    if (!port.isEmpty()) {
        bool ok = false;
        const int number = port.toInt(&ok);
        if (!ok || number < 1 || number > 65535 || port.startsWith(QLatin1Char('+'))) {
            m_error = tr("Endpoint port \"%1\" is not valid").arg(port);
            return;
        }
    }
    if (path.contains(QLatin1Char(' ')) || path.contains(QLatin1Char('?')) || path.contains(QLatin1Char('#'))) {
        m_error = tr("Endpoint path \"%1\" is not valid").arg(path);
        return;
    }

    m_endpoint = host + (port.isEmpty() ? QString() : QLatin1Char(':') + port) + path;
}

QString EndpointHelper::endpointWithScheme() const
{
    if (m_endpoint.isEmpty())
        return QString();
    return (m_useSsl ? HttpsScheme : HttpScheme) + m_endpoint;
}

QPair<QString, bool> EndpointHelper::toPair(const QString& endpoint)
{
    const EndpointHelper helper(endpoint, true);
    if (helper.hasError())
        return qMakePair(endpoint.trimmed(), true);
    return qMakePair(helper.endpoint(), helper.useSsl());
}

QString EndpointHelper::toEndpoint(const QString& endpoint)
{
    return toPair(endpoint).first;
}

QString EndpointHelper::toEndpointWithScheme(const QString& endpoint, bool useSsl)
{
    const QString text = endpoint.trimmed();
    if (text.isEmpty())
        return text;
    if (text.startsWith(HttpScheme, Qt::CaseInsensitive) || text.startsWith(HttpsScheme, Qt::CaseInsensitive))
        return text;
    return (useSsl ? HttpsScheme : HttpScheme) + text;
}

} // namespace NVL::Utitlity
