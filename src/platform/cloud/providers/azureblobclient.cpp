#include "azureblobclient.h"

#include <algorithm>

#include <QHostAddress>
#include <QJsonObject>
#include <QLocale>
#include <QMessageAuthenticationCode>
#include <QRegularExpression>
#include <QXmlStreamReader>

#include "cloud/cloudconfig.h"
#include "cloud/containerparams/base.h"
#include "cloud/endpointhelper.h"
#include "cloud/listingobject.h"
#include "listingpager.h"
#include "providererrors.h"
#include "s3signer.h"

namespace NVL::Cloud {

namespace {

namespace AZ = Config::AzureBlob;
const QByteArray ApiVersion = "2021-08-06";

QString suffixOf(const QString& accountType)
{
    namespace Value = AZ::AccountTypes::Value;
    if (accountType == Value::Government)
        return QStringLiteral("blob.core.usgovcloudapi.net");
    if (accountType == Value::Germany)
        return QStringLiteral("blob.core.cloudapi.de");
    if (accountType == Value::China)
        return QStringLiteral("blob.core.chinacloudapi.cn");
    return QStringLiteral("blob.core.windows.net");
}

// The error's code (header first, then the document) and message.
QPair<QString, QString> errorOf(const HttpExchange& exchange)
{
    QString code = QString::fromLatin1(exchange.header("x-ms-error-code"));
    QString message;
    QXmlStreamReader reader(exchange.body);
    if (reader.readNextStartElement() && reader.name() == QLatin1String("Error")) {
        while (reader.readNextStartElement()) {
            if (reader.name() == QLatin1String("Code") && code.isEmpty())
                code = reader.readElementText();
            else if (reader.name() == QLatin1String("Message"))
                message = reader.readElementText().section(QLatin1Char('\n'), 0, 0);
            else
                reader.skipCurrentElement();
        }
    }
    // A signature the server cannot verify reads "Server failed to
    // authenticate the request" under either code (Azurite answers
    // AuthorizationFailure where Azure answers AuthenticationFailed).
    if (code == QLatin1String("AuthorizationFailure") && message.contains(QLatin1String("failed to authenticate")))
        code = QStringLiteral("AuthenticationFailed");
    return {code, message};
}

QDateTime timeOf(const QString& text)
{
    // RFC 1123, as Azure writes Last-Modified.
    QDateTime time = QLocale::c().toDateTime(text, QStringLiteral("ddd, dd MMM yyyy HH:mm:ss 'GMT'"));
    time.setTimeSpec(Qt::UTC);
    return time;
}

} // namespace

QString AzureBlobClient::nameError(const QString& name)
{
    static const QRegularExpression rule(QStringLiteral("^[a-z0-9](?:[a-z0-9]|-(?=[a-z0-9])){2,62}$"));
    if (name.isEmpty())
        return QStringLiteral("Container name is empty");
    if (!rule.match(name).hasMatch())
        return QStringLiteral("Container name \"%1\" must be 3 to 63 lower-case letters, digits and single hyphens, "
                              "beginning and ending with a letter or digit")
            .arg(name);
    return QString();
}

OperationResult AzureBlobClient::accountUrl(const QMap<QString, QVariant>& config, QUrl* url, bool* pathStyle) const
{
    const QString account = config.value(AZ::Username).toString().trimmed();
    if (account.isEmpty() || config.value(AZ::Password).toString().trimmed().isEmpty())
        return OperationResult::failure(
            OperationError::InvalidConfig, QStringLiteral("Account name or shared key is empty"));
    const QString type = config.value(AZ::AccountTypes::Key).toString();
    const bool useSsl = config.value(Api::Config::Http::UseSsl, true).toBool();
    if (type == AZ::AccountTypes::Value::AzureStack) {
        const QString endpoint = config.value(Api::Config::Http::Endpoint).toString().trimmed();
        if (endpoint.isEmpty())
            return OperationResult::failure(OperationError::InvalidConfig, QStringLiteral("Endpoint is empty"));
        Utitlity::EndpointHelper helper(endpoint, useSsl);
        if (helper.hasError())
            return OperationResult::failure(OperationError::InvalidConfig, helper.lastErrorMessage());
        *url = QUrl(helper.endpointWithScheme());
        const QString host = url->host();
        *pathStyle = !QHostAddress(host).isNull() || host == QLatin1String("localhost");
        if (*pathStyle)
            url->setPath(url->path() + QLatin1Char('/') + account);
        else
            url->setHost(account + QLatin1Char('.') + host);
    } else {
        *pathStyle = false;
        *url = QUrl(QStringLiteral("%1://%2.%3").arg(useSsl ? "https" : "http", account, suffixOf(type)));
    }
    if (!url->isValid() || url->host().isEmpty())
        return OperationResult::failure(
            OperationError::InvalidConfig, QStringLiteral("Account name \"%1\" makes no valid address").arg(account));
    return {};
}

QByteArray AzureBlobClient::stringToSign(const HttpExchange& exchange, const QString& account, bool pathStyle)
{
    QByteArray md5, type, range;
    QList<QPair<QByteArray, QByteArray>> ms;
    for (const auto& header : exchange.requestHeaders) {
        const QByteArray name = header.first.toLower();
        if (name == "content-md5")
            md5 = header.second;
        else if (name == "content-type")
            type = header.second;
        else if (name == "range")
            range = header.second;
        else if (name.startsWith("x-ms-"))
            ms.append({name, header.second.trimmed()});
    }
    std::sort(ms.begin(), ms.end());
    const QByteArray length
        = exchange.requestBody.isEmpty() ? QByteArray() : QByteArray::number(exchange.requestBody.size());
    QByteArray text = exchange.method + "\n\n\n" + length + '\n' + md5 + '\n' + type + "\n\n\n\n\n\n" + range + '\n';
    for (const auto& header : qAsConst(ms))
        text += header.first + ':' + header.second + '\n';
    // The resource is the account and the URL's path; an emulator addressed
    // by path has the account in its path as well.
    QByteArray path = exchange.url.path(QUrl::FullyEncoded).toLatin1();
    if (path.isEmpty())
        path = "/";
    Q_UNUSED(pathStyle)
    text += '/' + account.toUtf8() + path;
    QMap<QByteArray, QByteArrayList> query;
    const QByteArray encoded = exchange.url.query(QUrl::FullyEncoded).toLatin1();
    for (const QByteArray& item : encoded.split('&')) {
        if (item.isEmpty())
            continue;
        const int equals = item.indexOf('=');
        const QByteArray key = QByteArray::fromPercentEncoding(equals < 0 ? item : item.left(equals)).toLower();
        query[key].append(equals < 0 ? QByteArray() : QByteArray::fromPercentEncoding(item.mid(equals + 1)));
    }
    for (auto it = query.begin(); it != query.end(); ++it) {
        std::sort(it.value().begin(), it.value().end());
        text += '\n' + it.key() + ':' + it.value().join(',');
    }
    return text;
}

OperationResult AzureBlobClient::request(
    const QMap<QString, QVariant>& config, const Request& request, HttpExchange* exchange, const CancelToken& cancel)
{
    QUrl base;
    bool pathStyle = false;
    OperationResult result = accountUrl(config, &base, &pathStyle);
    if (result.isError())
        return result;
    QByteArray url = base.toEncoded(QUrl::StripTrailingSlash) + '/' + S3Signer::uriEncode(request.path.toUtf8(), true);
    QByteArrayList items;
    for (const auto& item : request.query)
        items.append(
            S3Signer::uriEncode(item.first.toUtf8(), false) + '=' + S3Signer::uriEncode(item.second.toUtf8(), false));
    if (!items.isEmpty())
        url += '?' + items.join('&');
    exchange->method = request.method;
    exchange->url = QUrl::fromEncoded(url, QUrl::StrictMode);
    exchange->requestHeaders = request.headers;
    exchange->requestBody = request.body;
    const QByteArray date
        = QLocale::c()
              .toString(QDateTime::currentDateTimeUtc(), QStringLiteral("ddd, dd MMM yyyy HH:mm:ss 'GMT'"))
              .toLatin1();
    exchange->requestHeaders.append({"x-ms-date", date});
    exchange->requestHeaders.append({"x-ms-version", ApiVersion});
    const QString account = config.value(AZ::Username).toString().trimmed();
    const QByteArray key = QByteArray::fromBase64(config.value(AZ::Password).toString().trimmed().toLatin1());
    const QByteArray signature
        = QMessageAuthenticationCode::hash(stringToSign(*exchange, account, pathStyle), key, QCryptographicHash::Sha256)
              .toBase64();
    exchange->requestHeaders.append({"Authorization", "SharedKey " + account.toUtf8() + ':' + signature});
    if (!http(config).perform(*exchange, cancel))
        return transportFailure(*exchange, config);
    if (exchange->status >= 300) {
        const QPair<QString, QString> error = errorOf(*exchange);
        return ProviderErrors::answer(ProviderErrors::Protocol::Azure, exchange->status, error.first, error.second,
            request.path.section(QLatin1Char('/'), 0, 0));
    }
    return {};
}

OperationResult AzureBlobClient::checkConfig(const QMap<QString, QVariant>& config, const CancelToken& cancel)
{
    const QString container = config.value(OperationConfig::ContainerName).toString().trimmed();
    Request probe;
    probe.path = container;
    probe.query = container.isEmpty()
        ? QList<QPair<QString, QString>> {{QStringLiteral("comp"), QStringLiteral("list")},
            {QStringLiteral("maxresults"), QStringLiteral("1")}}
        : QList<QPair<QString, QString>> {{QStringLiteral("restype"), QStringLiteral("container")}};
    HttpExchange exchange;
    OperationResult result = request(config, probe, &exchange, cancel);
    if (!result.isError())
        result.config = config;
    return result;
}

OperationResult AzureBlobClient::listContainers(const QMap<QString, QVariant>& config, const CancelToken& cancel)
{
    OperationResult result;
    QString marker;
    do {
        Request list;
        list.query = {{QStringLiteral("comp"), QStringLiteral("list")}};
        if (!marker.isEmpty())
            list.query.append({QStringLiteral("marker"), marker});
        HttpExchange exchange;
        OperationResult page = request(config, list, &exchange, cancel);
        if (page.isError())
            return page;
        const QString previous = marker;
        marker.clear();
        QXmlStreamReader reader(exchange.body);
        while (reader.readNext() != QXmlStreamReader::EndDocument && !reader.hasError()) {
            if (!reader.isStartElement())
                continue;
            if (reader.name() == QLatin1String("Container")) {
                while (reader.readNextStartElement()) {
                    if (reader.name() == QLatin1String("Name"))
                        result.data.append(QJsonObject {{QStringLiteral("Name"), reader.readElementText()}});
                    else
                        reader.skipCurrentElement();
                }
            } else if (reader.name() == QLatin1String("NextMarker")) {
                marker = reader.readElementText();
            }
        }
        if (reader.hasError())
            return OperationResult::failure(OperationError::InternalError,
                QStringLiteral("The server's container list could not be read: %1").arg(reader.errorString()));
        if (!marker.isEmpty() && marker == previous)
            return OperationResult::failure(
                OperationError::InternalError, QStringLiteral("The server's container list does not move forward"));
    } while (!marker.isEmpty());
    return result;
}

OperationResult AzureBlobClient::createContainer(
    const QMap<QString, QVariant>& config, const QJsonObject& params, const CancelToken& cancel)
{
    const QString name = params.value(ContainerParams::Key::Name).toString().trimmed();
    const QString error = nameError(name);
    if (!error.isEmpty())
        return OperationResult::failure(OperationError::InvalidName, error);
    Request create;
    create.method = "PUT";
    create.path = name;
    create.query = {{QStringLiteral("restype"), QStringLiteral("container")}};
    const QString access = params.value(ContainerParams::Key::Access).toString();
    if (access == QLatin1String("blob") || access == QLatin1String("container"))
        create.headers.append({"x-ms-blob-public-access", access.toLatin1()});
    HttpExchange exchange;
    return request(config, create, &exchange, cancel);
}

OperationResult AzureBlobClient::listing(
    const QMap<QString, QVariant>& config, const ListingRequest& listing, const CancelToken& cancel)
{
    const QString container = config.value(OperationConfig::ContainerName).toString().trimmed();
    if (container.isEmpty())
        return OperationResult::failure(OperationError::InvalidConfig, QStringLiteral("No container is chosen"));
    QString prefix = listing.prefix;
    while (prefix.startsWith(QLatin1Char('/')))
        prefix.remove(0, 1);
    Request list;
    list.path = container;
    const int maxKeys = listing.maxKeys ? listing.maxKeys : ListingPager::DefaultMaxKeys;
    list.query = {{QStringLiteral("restype"), QStringLiteral("container")},
        {QStringLiteral("comp"), QStringLiteral("list")}, {QStringLiteral("maxresults"), QString::number(maxKeys)}};
    if (!prefix.isEmpty())
        list.query.append({QStringLiteral("prefix"), prefix});
    if (!listing.delimiter.isEmpty())
        list.query.append({QStringLiteral("delimiter"), listing.delimiter});
    if (!listing.marker.isEmpty())
        list.query.append({QStringLiteral("marker"), listing.marker});
    HttpExchange exchange;
    OperationResult result = request(config, list, &exchange, cancel);
    if (result.isError())
        return result;
    QXmlStreamReader reader(exchange.body);
    while (reader.readNext() != QXmlStreamReader::EndDocument && !reader.hasError()) {
        if (!reader.isStartElement())
            continue;
        if (reader.name() == QLatin1String("Blob")) {
            QString name;
            qint64 size = 0;
            QDateTime modified;
            while (reader.readNextStartElement()) {
                if (reader.name() == QLatin1String("Name")) {
                    name = reader.readElementText();
                } else if (reader.name() == QLatin1String("Properties")) {
                    while (reader.readNextStartElement()) {
                        if (reader.name() == QLatin1String("Content-Length"))
                            size = reader.readElementText().toLongLong();
                        else if (reader.name() == QLatin1String("Last-Modified"))
                            modified = timeOf(reader.readElementText());
                        else
                            reader.skipCurrentElement();
                    }
                } else {
                    reader.skipCurrentElement();
                }
            }
            result.data.append(Api::ListingObject(name, false, size, modified).json());
        } else if (reader.name() == QLatin1String("BlobPrefix")) {
            while (reader.readNextStartElement()) {
                if (reader.name() == QLatin1String("Name")) {
                    QString folder = reader.readElementText();
                    if (!listing.delimiter.isEmpty() && folder.endsWith(listing.delimiter))
                        folder.chop(listing.delimiter.size());
                    result.data.append(Api::ListingObject(folder, true, 0, QDateTime()).json());
                } else {
                    reader.skipCurrentElement();
                }
            }
        } else if (reader.name() == QLatin1String("NextMarker")) {
            result.marker = reader.readElementText();
        }
    }
    if (reader.hasError())
        return OperationResult::failure(OperationError::InternalError,
            QStringLiteral("The server's listing of \"%1\" could not be read").arg(container));
    return result;
}

} // namespace NVL::Cloud
