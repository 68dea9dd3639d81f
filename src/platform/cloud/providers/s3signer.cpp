#include "s3signer.h"

#include <algorithm>

#include <QCryptographicHash>
#include <QLocale>
#include <QMessageAuthenticationCode>
#include <QUrlQuery>

namespace NVL::Cloud {

namespace {

QByteArray hmacSha256(const QByteArray& key, const QByteArray& data)
{
    return QMessageAuthenticationCode::hash(data, key, QCryptographicHash::Sha256);
}

QByteArray hostHeader(const QUrl& url)
{
    const bool tls = url.scheme() == QLatin1String("https");
    QByteArray host = url.host(QUrl::FullyEncoded).toLatin1();
    if (host.contains(':'))
        host = '[' + host + ']';
    const int port = url.port(-1);
    if (port != -1 && port != (tls ? 443 : 80))
        host += ':' + QByteArray::number(port);
    return host;
}

void setHeader(HttpExchange& exchange, const QByteArray& name, const QByteArray& value)
{
    for (auto& header : exchange.requestHeaders) {
        if (header.first.toLower() == name.toLower()) {
            header.second = value;
            return;
        }
    }
    exchange.requestHeaders.append({name, value});
}

} // namespace

S3Signer::S3Signer(Version version, const QString& accessKey, const QString& secretKey, const QString& region)
    : m_version(version)
    , m_accessKey(accessKey.toUtf8())
    , m_secretKey(secretKey.toUtf8())
    , m_region(region)
{ }

QByteArray S3Signer::uriEncode(const QByteArray& text, bool keepSlash)
{
    static const char hex[] = "0123456789ABCDEF";
    QByteArray out;
    out.reserve(text.size() * 3);
    for (const char c : text) {
        const auto u = static_cast<unsigned char>(c);
        if ((u >= 'A' && u <= 'Z') || (u >= 'a' && u <= 'z') || (u >= '0' && u <= '9') || u == '-' || u == '_'
            || u == '.' || u == '~' || (keepSlash && u == '/')) {
            out.append(c);
        } else {
            out.append('%');
            out.append(hex[u >> 4]);
            out.append(hex[u & 0xf]);
        }
    }
    return out;
}

void S3Signer::sign(HttpExchange& exchange, const QByteArray& v2Resource, const QDateTime& now) const
{
    if (!exchange.requestBody.isEmpty() || exchange.method == "PUT" || exchange.method == "POST")
        setHeader(exchange, "Content-MD5",
            QCryptographicHash::hash(exchange.requestBody, QCryptographicHash::Md5).toBase64());
    if (m_version == Version::V2)
        signV2(exchange, v2Resource, now);
    else
        signV4(exchange, now);
}

void S3Signer::signV2(HttpExchange& exchange, const QByteArray& resource, const QDateTime& now) const
{
    const QByteArray date
        = QLocale::c().toString(now.toUTC(), QStringLiteral("ddd, dd MMM yyyy HH:mm:ss 'GMT'")).toLatin1();
    setHeader(exchange, "Date", date);
    QByteArray md5;
    QByteArray type;
    QList<QPair<QByteArray, QByteArray>> amz;
    for (const auto& header : qAsConst(exchange.requestHeaders)) {
        const QByteArray name = header.first.toLower();
        if (name == "content-md5")
            md5 = header.second;
        else if (name == "content-type")
            type = header.second;
        else if (name.startsWith("x-amz-"))
            amz.append({name, header.second.trimmed()});
    }
    std::sort(amz.begin(), amz.end());
    QByteArray toSign = exchange.method + '\n' + md5 + '\n' + type + '\n' + date + '\n';
    for (const auto& header : qAsConst(amz))
        toSign += header.first + ':' + header.second + '\n';
    toSign += resource;
    const QByteArray signature
        = QMessageAuthenticationCode::hash(toSign, m_secretKey, QCryptographicHash::Sha1).toBase64();
    setHeader(exchange, "Authorization", "AWS " + m_accessKey + ':' + signature);
}

void S3Signer::signV4(HttpExchange& exchange, const QDateTime& now) const
{
    const QDateTime utc = now.toUTC();
    const QByteArray stamp = utc.toString(QStringLiteral("yyyyMMdd'T'HHmmss'Z'")).toLatin1();
    const QByteArray day = stamp.left(8);
    const QByteArray payloadHash = QCryptographicHash::hash(exchange.requestBody, QCryptographicHash::Sha256).toHex();
    setHeader(exchange, "x-amz-date", stamp);
    setHeader(exchange, "x-amz-content-sha256", payloadHash);

    QList<QPair<QByteArray, QByteArray>> headers = {{"host", hostHeader(exchange.url)}};
    for (const auto& header : qAsConst(exchange.requestHeaders)) {
        const QByteArray name = header.first.toLower();
        if (name == "content-md5" || name == "content-type" || name.startsWith("x-amz-"))
            headers.append({name, header.second.simplified()});
    }
    std::sort(headers.begin(), headers.end());
    QByteArray canonicalHeaders;
    QByteArrayList signedNames;
    for (const auto& header : qAsConst(headers)) {
        canonicalHeaders += header.first + ':' + header.second + '\n';
        signedNames.append(header.first);
    }
    const QByteArray signedHeaders = signedNames.join(';');

    // The query as the server will parse it: decoded pairs, encoded again
    // the one way the signature allows, sorted.
    QList<QPair<QByteArray, QByteArray>> query;
    const QByteArray encodedQuery = exchange.url.query(QUrl::FullyEncoded).toLatin1();
    for (const QByteArray& item : encodedQuery.split('&')) {
        if (item.isEmpty())
            continue;
        const int equals = item.indexOf('=');
        const QByteArray key = QByteArray::fromPercentEncoding(equals < 0 ? item : item.left(equals));
        const QByteArray value = equals < 0 ? QByteArray() : QByteArray::fromPercentEncoding(item.mid(equals + 1));
        query.append({uriEncode(key, false), uriEncode(value, false)});
    }
    std::sort(query.begin(), query.end());
    QByteArrayList queryItems;
    for (const auto& item : qAsConst(query))
        queryItems.append(item.first + '=' + item.second);

    QByteArray path = exchange.url.path(QUrl::FullyEncoded).toLatin1();
    if (path.isEmpty())
        path = "/";
    const QByteArray canonicalRequest = exchange.method + '\n' + path + '\n' + queryItems.join('&') + '\n'
        + canonicalHeaders + '\n' + signedHeaders + '\n' + payloadHash;

    const QByteArray region = m_region.toUtf8();
    const QByteArray scope = day + '/' + region + "/s3/aws4_request";
    const QByteArray toSign = "AWS4-HMAC-SHA256\n" + stamp + '\n' + scope + '\n'
        + QCryptographicHash::hash(canonicalRequest, QCryptographicHash::Sha256).toHex();
    QByteArray key = hmacSha256("AWS4" + m_secretKey, day);
    key = hmacSha256(key, region);
    key = hmacSha256(key, "s3");
    key = hmacSha256(key, "aws4_request");
    const QByteArray signature = hmacSha256(key, toSign).toHex();
    setHeader(exchange, "Authorization",
        "AWS4-HMAC-SHA256 Credential=" + m_accessKey + '/' + scope + ", SignedHeaders=" + signedHeaders
            + ", Signature=" + signature);
}

} // namespace NVL::Cloud
