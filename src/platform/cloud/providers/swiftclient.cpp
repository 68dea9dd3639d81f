#include "swiftclient.h"

#include <QJsonDocument>
#include <QJsonObject>

#include "cloud/cloudconfig.h"
#include "cloud/containerparams/base.h"
#include "cloud/endpointhelper.h"
#include "listingpager.h"
#include "providererrors.h"
#include "s3signer.h"

namespace NVL::Cloud {

namespace {

namespace OS = Config::OpenStack;

QByteArray encodePath(const QString& path)
{
    return S3Signer::uriEncode(path.toUtf8(), true);
}

QUrl withQuery(const QUrl& base, const QByteArray& path, const QList<QPair<QString, QString>>& query)
{
    QByteArray encoded = base.toEncoded(QUrl::RemoveQuery | QUrl::RemoveFragment | QUrl::StripTrailingSlash) + path;
    QByteArrayList items;
    for (const auto& item : query)
        items.append(
            S3Signer::uriEncode(item.first.toUtf8(), false) + '=' + S3Signer::uriEncode(item.second.toUtf8(), false));
    if (!items.isEmpty())
        encoded += '?' + items.join('&');
    return QUrl::fromEncoded(encoded, QUrl::StrictMode);
}

// The identity service from the endpoint as typed: the authentication version
// is the last path segment ("/v1.0", "/v2.0", "/v3"), the scheme the SSL flag.
QUrl identityUrl(const QMap<QString, QVariant>& config, QString* error)
{
    const QString text = config.value(Api::Config::Http::Endpoint).toString().trimmed();
    if (text.isEmpty()) {
        *error = QStringLiteral("Endpoint is empty");
        return QUrl();
    }
    Utitlity::EndpointHelper helper(text, config.value(Api::Config::Http::UseSsl, true).toBool());
    if (helper.hasError()) {
        *error = helper.lastErrorMessage();
        return QUrl();
    }
    const QUrl url(helper.endpointWithScheme());
    if (!url.isValid() || url.host().isEmpty())
        *error = QStringLiteral("Endpoint \"%1\" is not valid").arg(text);
    return url;
}

QJsonObject named(const QString& value, bool byId)
{
    return QJsonObject {{byId ? QStringLiteral("id") : QStringLiteral("name"), value}};
}

} // namespace

QString SwiftClient::nameError(const QString& name)
{
    const QString error = containerNameError(name);
    if (!error.isEmpty())
        return error;
    if (name.toUtf8().size() > 256)
        return QStringLiteral("Container name \"%1\" is longer than 256 bytes").arg(name);
    return QString();
}

OperationResult SwiftClient::login(const QMap<QString, QVariant>& config, const CancelToken& cancel)
{
    m_token.clear();
    m_endpoints.clear();
    if (config.value(OS::Username).toString().trimmed().isEmpty() || config.value(OS::ApiKey).toString().isEmpty())
        return OperationResult::failure(OperationError::InvalidConfig, QStringLiteral("User name or API key is empty"));
    QString error;
    const QUrl url = identityUrl(config, &error);
    if (!error.isEmpty())
        return OperationResult::failure(OperationError::InvalidConfig, error);
    const int type = config.value(OS::AuthType, 1).toInt();
    OperationResult result
        = type == 2 || type == 3 ? loginKeystone(config, url, type, cancel) : loginV1(config, url, cancel);
    if (!result.isError())
        m_loggedInWith = config;
    return result;
}

OperationResult SwiftClient::loginV1(const QMap<QString, QVariant>& config, const QUrl& url, const CancelToken& cancel)
{
    HttpExchange exchange;
    exchange.url = url;
    exchange.requestHeaders = {{"X-Auth-User", config.value(OS::Username).toString().trimmed().toUtf8()},
        {"X-Auth-Key", config.value(OS::ApiKey).toString().toUtf8()}};
    if (!http(config).perform(exchange, cancel))
        return transportFailure(exchange, config);
    if (exchange.status == 401 || exchange.status == 403)
        return OperationResult::failure(
            OperationError::AuthenticationFailed, QStringLiteral("The server refused the user name or API key"));
    if (exchange.status >= 300)
        return ProviderErrors::answer(ProviderErrors::Protocol::Swift, exchange.status, QString(),
            QString::fromUtf8(exchange.body.left(200)), url.toString());
    m_token = exchange.header("x-auth-token");
    QUrl storage(QString::fromUtf8(exchange.header("x-storage-url")));
    if (m_token.isEmpty() || !storage.isValid() || storage.host().isEmpty())
        return OperationResult::failure(
            OperationError::InternalError, QStringLiteral("The server's login answer has no token or storage URL"));
    // A proxy behind a TLS front (a load balancer, stunnel) sees plain HTTP
    // and names its storage with "http" and the front's own host and port.
    // Storage on the very server we logged in at is reached the way we
    // reached the login: plain HTTP to a TLS port would fail, and from a
    // TLS login it would send the token in the clear.
    if (url.scheme() == QLatin1String("https") && storage.scheme() == QLatin1String("http")
        && storage.host().compare(url.host(), Qt::CaseInsensitive) == 0 && storage.port(80) == url.port(443))
        storage.setScheme(QStringLiteral("https"));
    m_endpoints.append({QString(), storage, storage});
    return {};
}

OperationResult SwiftClient::loginKeystone(
    const QMap<QString, QVariant>& config, const QUrl& url, int version, const CancelToken& cancel)
{
    const QString user = config.value(OS::Username).toString().trimmed();
    const QString key = config.value(OS::ApiKey).toString();
    QJsonObject auth;
    if (version == 2) {
        auth.insert(QStringLiteral("passwordCredentials"),
            QJsonObject {{QStringLiteral("username"), user}, {QStringLiteral("password"), key}});
        const QString tenantId = config.value(OS::Auth_Keystore_V2::TenantId).toString().trimmed();
        const QString tenantName = config.value(OS::Auth_Keystore_V2::TenantName).toString().trimmed();
        if (!tenantId.isEmpty())
            auth.insert(QStringLiteral("tenantId"), tenantId);
        else if (!tenantName.isEmpty())
            auth.insert(QStringLiteral("tenantName"), tenantName);
    } else {
        const QString domainId = config.value(OS::Auth_Keystore_V3::DomainId).toString().trimmed();
        const QString domainName = config.value(OS::Auth_Keystore_V3::DomainName).toString().trimmed();
        const QJsonObject domain = named(domainId.isEmpty() ? domainName : domainId, !domainId.isEmpty());
        const QJsonObject userObject {
            {QStringLiteral("name"), user}, {QStringLiteral("domain"), domain}, {QStringLiteral("password"), key}};
        auth.insert(QStringLiteral("identity"),
            QJsonObject {{QStringLiteral("methods"), QJsonArray {QStringLiteral("password")}},
                {QStringLiteral("password"), QJsonObject {{QStringLiteral("user"), userObject}}}});
        if (config.value(OS::Auth_Keystore_V3::UseScope::Key).toInt() == 1) {
            const QString projectId = config.value(OS::Auth_Keystore_V3::UseScope::ProjectId).toString().trimmed();
            const QString projectName = config.value(OS::Auth_Keystore_V3::UseScope::ProjectName).toString().trimmed();
            QJsonObject project = named(projectId.isEmpty() ? projectName : projectId, !projectId.isEmpty());
            if (projectId.isEmpty())
                project.insert(QStringLiteral("domain"), domain);
            auth.insert(QStringLiteral("scope"), QJsonObject {{QStringLiteral("project"), project}});
        }
    }
    HttpExchange exchange;
    exchange.method = "POST";
    QByteArray path = url.path(QUrl::FullyEncoded).toLatin1();
    if (path.endsWith('/'))
        path.chop(1);
    path += version == 2 ? "/tokens" : "/auth/tokens";
    QUrl target = url;
    target.setPath(QString::fromLatin1(path), QUrl::TolerantMode);
    exchange.url = target;
    exchange.requestHeaders = {{"Content-Type", "application/json"}, {"Accept", "application/json"}};
    exchange.requestBody = QJsonDocument(QJsonObject {{QStringLiteral("auth"), auth}}).toJson(QJsonDocument::Compact);
    if (!http(config).perform(exchange, cancel))
        return transportFailure(exchange, config);
    if (exchange.status == 401 || exchange.status == 403)
        return OperationResult::failure(OperationError::AuthenticationFailed,
            QStringLiteral("The identity service refused the user name, API key or scope"));
    if (exchange.status >= 300)
        return ProviderErrors::answer(ProviderErrors::Protocol::Swift, exchange.status, QString(),
            QString::fromUtf8(exchange.body.left(200)), target.toString());

    QJsonParseError parseError;
    const QJsonObject answer = QJsonDocument::fromJson(exchange.body, &parseError).object();
    QJsonArray catalog;
    if (version == 2) {
        const QJsonObject access = answer.value(QStringLiteral("access")).toObject();
        m_token = access.value(QStringLiteral("token")).toObject().value(QStringLiteral("id")).toString().toUtf8();
        catalog = access.value(QStringLiteral("serviceCatalog")).toArray();
    } else {
        m_token = exchange.header("x-subject-token");
        catalog = answer.value(QStringLiteral("token")).toObject().value(QStringLiteral("catalog")).toArray();
    }
    for (const QJsonValue& service : qAsConst(catalog)) {
        if (service.toObject().value(QStringLiteral("type")).toString() != QLatin1String("object-store"))
            continue;
        const QJsonArray endpoints = service.toObject().value(QStringLiteral("endpoints")).toArray();
        for (const QJsonValue& value : endpoints) {
            const QJsonObject endpoint = value.toObject();
            const QString region = endpoint.value(QStringLiteral("region")).toString();
            Endpoint* entry = nullptr;
            for (Endpoint& known : m_endpoints)
                entry = known.region == region ? &known : entry;
            if (!entry) {
                m_endpoints.append({region, QUrl(), QUrl()});
                entry = &m_endpoints.last();
            }
            if (version == 2) {
                entry->publicUrl = QUrl(endpoint.value(QStringLiteral("publicURL")).toString());
                entry->internalUrl = QUrl(endpoint.value(QStringLiteral("internalURL")).toString());
            } else if (endpoint.value(QStringLiteral("interface")).toString() == QLatin1String("public")) {
                entry->publicUrl = QUrl(endpoint.value(QStringLiteral("url")).toString());
            } else if (endpoint.value(QStringLiteral("interface")).toString() == QLatin1String("internal")) {
                entry->internalUrl = QUrl(endpoint.value(QStringLiteral("url")).toString());
            }
        }
    }
    if (m_token.isEmpty())
        return OperationResult::failure(
            OperationError::InternalError, QStringLiteral("The identity service's answer has no token"));
    if (m_endpoints.isEmpty())
        return OperationResult::failure(OperationError::NotFound,
            QStringLiteral("The identity service's catalog has no object storage for this user"));
    return {};
}

OperationResult SwiftClient::storageUrl(const QMap<QString, QVariant>& config, const QString& region, QUrl* url) const
{
    const bool internal = config.value(OS::UseInternalUrl).toBool();
    for (const Endpoint& endpoint : m_endpoints) {
        if (!region.isEmpty() && endpoint.region != region)
            continue;
        *url = internal && endpoint.internalUrl.isValid() ? endpoint.internalUrl : endpoint.publicUrl;
        if (url->isValid())
            return {};
    }
    return OperationResult::failure(
        OperationError::NotFound, QStringLiteral("The catalog has no object storage in region \"%1\"").arg(region));
}

OperationResult SwiftClient::request(const QMap<QString, QVariant>& config, const QByteArray& method,
    const QString& path, const QList<QPair<QString, QString>>& query, HttpExchange* exchange, const CancelToken& cancel)
{
    for (int attempt = 0; attempt < 2; ++attempt) {
        if (m_token.isEmpty() || m_loggedInWith != config) {
            OperationResult result = login(config, cancel);
            if (result.isError())
                return result;
        }
        QString region = config.value(OS::Auth_Keystore_V2::Region).toString().trimmed();
        if (region.isEmpty())
            region = config.value(OS::Auth_Keystore_V3::Region).toString().trimmed();
        QUrl base;
        OperationResult result = storageUrl(config, region, &base);
        if (result.isError())
            return result;
        exchange->method = method;
        exchange->url = withQuery(base, path.isEmpty() ? QByteArray() : '/' + encodePath(path), query);
        exchange->requestHeaders = {{"X-Auth-Token", m_token}};
        if (method == "PUT")
            exchange->requestBody.clear();
        if (!http(config).perform(*exchange, cancel))
            return transportFailure(*exchange, config);
        // A token that ran out: log in again, once.
        if (exchange->status == 401 && attempt == 0) {
            m_token.clear();
            continue;
        }
        if (exchange->status >= 300)
            return ProviderErrors::answer(ProviderErrors::Protocol::Swift, exchange->status, QString(), QString(),
                path.section(QLatin1Char('/'), 0, 0));
        return {};
    }
    return OperationResult::failure(
        OperationError::AuthenticationFailed, QStringLiteral("The server refused a fresh token"));
}

OperationResult SwiftClient::checkConfig(const QMap<QString, QVariant>& config, const CancelToken& cancel)
{
    HttpExchange exchange;
    const QString container = config.value(OperationConfig::ContainerName).toString().trimmed();
    OperationResult result = request(config, "HEAD", container, {}, &exchange, cancel);
    if (!result.isError())
        result.config = config;
    return result;
}

OperationResult SwiftClient::listContainers(const QMap<QString, QVariant>& config, const CancelToken& cancel)
{
    HttpExchange exchange;
    OperationResult result
        = request(config, "GET", QString(), {{QStringLiteral("format"), QStringLiteral("json")}}, &exchange, cancel);
    if (result.isError())
        return result;
    // With a catalog of several regions the user picks the container and
    // its region together, so every region is listed.
    const QVector<Endpoint> endpoints = m_endpoints;
    for (const Endpoint& endpoint : endpoints) {
        HttpExchange regional;
        if (endpoints.size() > 1) {
            QMap<QString, QVariant> scoped = config;
            scoped.insert(OS::Auth_Keystore_V2::Region, endpoint.region);
            scoped.insert(OS::Auth_Keystore_V3::Region, endpoint.region);
            result = request(
                scoped, "GET", QString(), {{QStringLiteral("format"), QStringLiteral("json")}}, &regional, cancel);
            if (result.isError())
                return result;
        }
        const QByteArray body = endpoints.size() > 1 ? regional.body : exchange.body;
        const QJsonArray containers = QJsonDocument::fromJson(body).array();
        for (const QJsonValue& value : containers) {
            QJsonObject object {{QStringLiteral("Name"), value.toObject().value(QStringLiteral("name")).toString()}};
            if (!endpoint.region.isEmpty())
                object.insert(QStringLiteral("Region"), endpoint.region);
            result.data.append(object);
        }
    }
    return result;
}

OperationResult SwiftClient::createContainer(
    const QMap<QString, QVariant>& config, const QJsonObject& params, const CancelToken& cancel)
{
    const QString name = params.value(ContainerParams::Key::Name).toString().trimmed();
    const QString error = nameError(name);
    if (!error.isEmpty())
        return OperationResult::failure(OperationError::InvalidName, error);
    HttpExchange exchange;
    OperationResult result = request(config, "PUT", name, {}, &exchange, cancel);
    // Swift answers 202 for a container that is there already.
    if (!result.isError() && exchange.status == 202)
        return OperationResult::failure(
            OperationError::AlreadyExists, QStringLiteral("Container \"%1\" already exists").arg(name));
    return result;
}

OperationResult SwiftClient::listing(
    const QMap<QString, QVariant>& config, const ListingRequest& request, const CancelToken& cancel)
{
    const QString container = config.value(OperationConfig::ContainerName).toString().trimmed();
    if (container.isEmpty())
        return OperationResult::failure(OperationError::InvalidConfig, QStringLiteral("No container is chosen"));
    QString prefix = request.prefix;
    while (prefix.startsWith(QLatin1Char('/')))
        prefix.remove(0, 1);
    const int limit = request.maxKeys ? request.maxKeys : ListingPager::DefaultMaxKeys;
    QList<QPair<QString, QString>> query {
        {QStringLiteral("format"), QStringLiteral("json")}, {QStringLiteral("limit"), QString::number(limit)}};
    if (!prefix.isEmpty())
        query.append({QStringLiteral("prefix"), prefix});
    if (!request.delimiter.isEmpty())
        query.append({QStringLiteral("delimiter"), request.delimiter});
    if (!request.marker.isEmpty())
        query.append({QStringLiteral("marker"), request.marker});
    HttpExchange exchange;
    OperationResult result = this->request(config, "GET", container, query, &exchange, cancel);
    if (result.isError())
        return result;
    QJsonParseError parseError;
    const QJsonArray items = QJsonDocument::fromJson(exchange.body, &parseError).array();
    if (parseError.error != QJsonParseError::NoError)
        return OperationResult::failure(OperationError::InternalError,
            QStringLiteral("The server's listing of \"%1\" could not be read").arg(container));
    QString last;
    for (const QJsonValue& value : items) {
        const QJsonObject item = value.toObject();
        if (item.contains(QStringLiteral("subdir"))) {
            QString folder = item.value(QStringLiteral("subdir")).toString();
            last = folder;
            if (!request.delimiter.isEmpty() && folder.endsWith(request.delimiter))
                folder.chop(request.delimiter.size());
            result.data.append(Api::ListingObject(folder, true, 0, QDateTime()).json());
            continue;
        }
        const QString name = item.value(QStringLiteral("name")).toString();
        last = name;
        if (name == prefix && name.endsWith(QLatin1Char('/')))
            continue;
        QDateTime modified
            = QDateTime::fromString(item.value(QStringLiteral("last_modified")).toString(), Qt::ISODateWithMs);
        modified.setTimeSpec(Qt::UTC);
        result.data.append(
            Api::ListingObject(name, false, item.value(QStringLiteral("bytes")).toVariant().toLongLong(), modified)
                .json());
    }
    if (items.size() >= limit)
        result.marker = last;
    return result;
}

} // namespace NVL::Cloud
