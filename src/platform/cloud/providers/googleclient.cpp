#include "googleclient.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QUrlQuery>

#include "cloud/cloudconfig.h"
#include "cloud/containerparams/base.h"
#include "cloud/info/googlestorage.h"
#include "cloud/listingobject.h"
#include "googleserviceaccount.h"
#include "listingpager.h"
#include "providererrors.h"

namespace NVL::Cloud {

namespace {

namespace G = Config::GoogleStorage;
namespace App = Config::GoogleStorage::Auth_InstalledApplication;
namespace Sa = Config::GoogleStorage::Auth_ServiceAccount;

enum AuthType { Keys = 0, ServiceAccount = 1, InstalledApp = 2 };

QByteArray formValue(const QString& value)
{
    return QUrl::toPercentEncoding(value);
}

QByteArray clientForm()
{
    return "client_id=" + formValue(Info::GoogleStorage::clientId())
        + "&client_secret=" + formValue(Info::GoogleStorage::clientSecret());
}

// The token endpoint answers {"error", "error_description"}, the JSON API
// {"error": {"code", "message", "errors": [{"reason"}]}}.
OperationResult failureOf(const HttpExchange& exchange, const QString& subject)
{
    const QJsonObject body = QJsonDocument::fromJson(exchange.body).object();
    const QJsonValue error = body.value(QStringLiteral("error"));
    QString code, message;
    if (error.isString()) {
        code = error.toString();
        message = body.value(QStringLiteral("error_description")).toString();
    } else {
        const QJsonObject object = error.toObject();
        message = object.value(QStringLiteral("message")).toString();
        code = object.value(QStringLiteral("errors"))
                   .toArray()
                   .at(0)
                   .toObject()
                   .value(QStringLiteral("reason"))
                   .toString();
        if (exchange.status == 401)
            code = QStringLiteral("authError");
    }
    return ProviderErrors::answer(ProviderErrors::Protocol::Google, exchange.status, code, message, subject);
}

} // namespace

QString GoogleClient::nameError(const QString& name)
{
    static const QRegularExpression rule(QStringLiteral("^[a-z0-9][a-z0-9._-]{1,61}[a-z0-9]$"));
    if (name.isEmpty())
        return QStringLiteral("Bucket name is empty");
    if (!rule.match(name).hasMatch())
        return QStringLiteral("Bucket name \"%1\" must be 3 to 63 lower-case letters, digits, \"-\", \"_\" and \".\", "
                              "beginning and ending with a letter or digit")
            .arg(name);
    return QString();
}

QString GoogleClient::projectId(const QMap<QString, QVariant>& config) const
{
    const QString key = config.value(G::AuthType).toInt() == ServiceAccount ? Sa::ProjectId : App::ProjectId;
    const QString project = config.value(key).toString().trimmed();
    return project.isEmpty() ? m_keyProjectId : project;
}

OperationResult GoogleClient::postToken(const QMap<QString, QVariant>& config, const QUrl& tokenUri,
    const QByteArray& form, QJsonObject* answer, const CancelToken& cancel)
{
    HttpExchange exchange;
    exchange.method = "POST";
    exchange.url = tokenUri;
    exchange.requestHeaders = {{"Content-Type", "application/x-www-form-urlencoded"}};
    exchange.requestBody = form;
    if (!http(config).perform(exchange, cancel))
        return transportFailure(exchange, config);
    if (exchange.status != 200)
        return failureOf(exchange, QString());
    *answer = QJsonDocument::fromJson(exchange.body).object();
    if (answer->value(QStringLiteral("access_token")).toString().isEmpty())
        return OperationResult::failure(
            OperationError::InternalError, QStringLiteral("The token endpoint's answer has no access token"));
    return {};
}

OperationResult GoogleClient::refreshTokenFor(
    const QMap<QString, QVariant>& config, const QByteArray& code, const CancelToken& cancel)
{
    QJsonObject answer;
    return exchangeCode(config, QString::fromLatin1(code).trimmed(), &answer, cancel);
}

OperationResult GoogleClient::exchangeCode(
    const QMap<QString, QVariant>& config, const QString& code, QJsonObject* answer, const CancelToken& cancel)
{
    if (code.isEmpty())
        return OperationResult::failure(
            OperationError::InvalidConfig, QStringLiteral("No authorization code: sign in with the browser first"));
    QByteArray form = "grant_type=authorization_code&code=" + formValue(code) + '&' + clientForm() + "&redirect_uri="
        + formValue(config.value(App::RedirectUri, QStringLiteral("urn:ietf:wg:oauth:2.0:oob")).toString());
    const QString verifier = config.value(App::CodeVerifier).toString();
    if (!verifier.isEmpty())
        form += "&code_verifier=" + formValue(verifier);
    OperationResult result = postToken(config, Info::GoogleStorage::tokenEndpoint(), form, answer, cancel);
    if (result.isError())
        return result;
    const QString refresh = answer->value(QStringLiteral("refresh_token")).toString();
    if (refresh.isEmpty())
        return OperationResult::failure(
            OperationError::InternalError, QStringLiteral("The token endpoint gave no refresh token"));
    result.config.insert(App::RefreshToken, refresh);
    return result;
}

OperationResult GoogleClient::authorize(
    const QMap<QString, QVariant>& config, QMap<QString, QVariant>* obtained, const CancelToken& cancel)
{
    m_token.clear();
    const int type = config.value(G::AuthType).toInt();
    QJsonObject answer;
    OperationResult result;
    if (type == ServiceAccount) {
        GoogleServiceAccount account;
        QString error;
        if (!account.load(QByteArray::fromBase64(config.value(Sa::PrivateKey).toString().toLatin1()), &error))
            return OperationResult::failure(OperationError::InvalidConfig, error);
        m_keyProjectId = account.projectId();
        QString email = config.value(Sa::ServiceAccount).toString().trimmed();
        if (email.isEmpty())
            email = account.email();
        if (email.isEmpty())
            return OperationResult::failure(OperationError::InvalidConfig, QStringLiteral("No service account e-mail"));
        // A JSON key names the endpoint it was issued for; a PKCS #12 key
        // does not, and then the provider's usual one is meant.
        const QUrl tokenUri
            = account.tokenUri().isEmpty() ? Info::GoogleStorage::tokenEndpoint() : QUrl(account.tokenUri());
        const QByteArray jwt = account.assertion(email, Info::GoogleStorage::storageScope(), tokenUri.toString(),
            QDateTime::currentSecsSinceEpoch(), &error);
        if (jwt.isEmpty())
            return OperationResult::failure(OperationError::InvalidConfig, error);
        result = postToken(config, tokenUri,
            "grant_type=" + formValue(QStringLiteral("urn:ietf:params:oauth:grant-type:jwt-bearer"))
                + "&assertion=" + jwt,
            &answer, cancel);
    } else if (type == InstalledApp) {
        const QString refresh
            = obtained->value(App::RefreshToken, config.value(App::RefreshToken)).toString().trimmed();
        if (refresh.isEmpty()) {
            result = exchangeCode(config, config.value(App::InitCode).toString().trimmed(), &answer, cancel);
            if (result.isError())
                return result;
            // The code is spent: every later call must use the refresh token.
            obtained->insert(App::RefreshToken, result.config.value(App::RefreshToken));
            obtained->remove(App::InitCode);
            result = {};
        } else {
            result = postToken(config, Info::GoogleStorage::tokenEndpoint(),
                "grant_type=refresh_token&refresh_token=" + formValue(refresh) + '&' + clientForm(), &answer, cancel);
        }
    } else {
        return OperationResult::failure(
            OperationError::InvalidConfig, QStringLiteral("Access and secret keys are used through the XML API"));
    }
    if (result.isError())
        return result;
    m_token = answer.value(QStringLiteral("access_token")).toString().toUtf8();
    const int lifetime = answer.value(QStringLiteral("expires_in")).toInt(3600);
    // A minute's margin, so that a token does not expire on its way.
    m_tokenExpires = QDateTime::currentDateTimeUtc().addSecs(qMax(0, lifetime - 60));
    m_authorizedWith = config;
    return {};
}

OperationResult GoogleClient::call(const QMap<QString, QVariant>& config, const QByteArray& method, const QString& path,
    const QList<QPair<QString, QString>>& query, const QJsonObject& body, QJsonObject* answer,
    QMap<QString, QVariant>* obtained, const CancelToken& cancel, const QString& subject)
{
    QString base = config.value(Api::Config::Http::Endpoint).toString().trimmed();
    if (base.isEmpty())
        base = Info::GoogleStorage().defaultEndpoint().toString();
    else if (!base.contains(QLatin1String("://")))
        base = (config.value(Api::Config::Http::UseSsl, true).toBool() ? QStringLiteral("https://")
                                                                       : QStringLiteral("http://"))
            + base;
    QUrl url(base);
    while (base.endsWith(QLatin1Char('/')))
        base.chop(1);
    url.setPath(QUrl(base).path() + path);
    QUrlQuery urlQuery;
    for (const auto& item : query)
        urlQuery.addQueryItem(item.first, QString::fromLatin1(formValue(item.second)));
    url.setQuery(urlQuery);
    for (int attempt = 0; attempt < 2; ++attempt) {
        if (m_token.isEmpty() || m_authorizedWith != config || QDateTime::currentDateTimeUtc() >= m_tokenExpires) {
            OperationResult result = authorize(config, obtained, cancel);
            if (result.isError())
                return result;
        }
        HttpExchange exchange;
        exchange.method = method;
        exchange.url = url;
        exchange.requestHeaders = {{"Authorization", "Bearer " + m_token}};
        if (method == "POST") {
            exchange.requestHeaders.append(qMakePair(QByteArray("Content-Type"), QByteArray("application/json")));
            exchange.requestBody = QJsonDocument(body).toJson(QJsonDocument::Compact);
        }
        if (!http(config).perform(exchange, cancel))
            return transportFailure(exchange, config);
        if (exchange.status == 401 && attempt == 0) {
            m_token.clear();
            continue;
        }
        if (exchange.status != 200)
            return failureOf(exchange, subject);
        *answer = QJsonDocument::fromJson(exchange.body).object();
        return {};
    }
    return OperationResult::failure(
        OperationError::AuthenticationFailed, QStringLiteral("Google refused the access token"));
}

OperationResult GoogleClient::checkConfig(const QMap<QString, QVariant>& config, const CancelToken& cancel)
{
    QMap<QString, QVariant> obtained = config;
    const QString bucket = config.value(OperationConfig::ContainerName).toString().trimmed();
    OperationResult result;
    QJsonObject answer;
    if (bucket.isEmpty())
        result = authorize(config, &obtained, cancel);
    else
        result = call(
            config, "GET", QStringLiteral("/storage/v1/b/") + bucket, {}, {}, &answer, &obtained, cancel, bucket);
    if (!result.isError())
        result.config = obtained;
    return result;
}

OperationResult GoogleClient::listContainers(const QMap<QString, QVariant>& config, const CancelToken& cancel)
{
    QMap<QString, QVariant> obtained = config;
    OperationResult result;
    QString pageToken;
    do {
        QList<QPair<QString, QString>> query;
        QJsonObject answer;
        // The project is known only after a service account's key is read.
        if (m_token.isEmpty() || m_authorizedWith != config) {
            OperationResult authorized = authorize(config, &obtained, cancel);
            if (authorized.isError())
                return authorized;
        }
        const QString project = projectId(config);
        if (project.isEmpty())
            return OperationResult::failure(OperationError::InvalidConfig, QStringLiteral("No project ID"));
        query = {{QStringLiteral("project"), project}, {QStringLiteral("maxResults"), QStringLiteral("1000")}};
        if (!pageToken.isEmpty())
            query.append({QStringLiteral("pageToken"), pageToken});
        OperationResult page
            = call(config, "GET", QStringLiteral("/storage/v1/b"), query, {}, &answer, &obtained, cancel);
        if (page.isError())
            return page;
        const QJsonArray items = answer.value(QStringLiteral("items")).toArray();
        for (const QJsonValue& value : items) {
            const QJsonObject bucket = value.toObject();
            result.data.append(QJsonObject {{QStringLiteral("Name"), bucket.value(QStringLiteral("name")).toString()},
                {QStringLiteral("Location"), bucket.value(QStringLiteral("location")).toString()},
                {QStringLiteral("Type"), bucket.value(QStringLiteral("storageClass")).toString()}});
        }
        pageToken = answer.value(QStringLiteral("nextPageToken")).toString();
    } while (!pageToken.isEmpty());
    result.config = obtained;
    return result;
}

OperationResult GoogleClient::createContainer(
    const QMap<QString, QVariant>& config, const QJsonObject& params, const CancelToken& cancel)
{
    const QString name = params.value(ContainerParams::Key::Name).toString().trimmed();
    const QString error = nameError(name);
    if (!error.isEmpty())
        return OperationResult::failure(OperationError::InvalidName, error);
    QMap<QString, QVariant> obtained = config;
    if (m_token.isEmpty() || m_authorizedWith != config) {
        OperationResult authorized = authorize(config, &obtained, cancel);
        if (authorized.isError())
            return authorized;
    }
    const QString project = projectId(config);
    if (project.isEmpty())
        return OperationResult::failure(OperationError::InvalidConfig, QStringLiteral("No project ID"));
    QJsonObject body {{QStringLiteral("name"), name}};
    const QString location = params.value(ContainerParams::Key::Location).toString();
    if (!location.isEmpty())
        body.insert(QStringLiteral("location"), location);
    const QString storageClass = params.value(ContainerParams::Key::StorageClass).toString();
    if (!storageClass.isEmpty())
        body.insert(QStringLiteral("storageClass"), storageClass);
    QJsonObject answer;
    OperationResult result = call(config, "POST", QStringLiteral("/storage/v1/b"),
        {{QStringLiteral("project"), project}}, body, &answer, &obtained, cancel, name);
    if (!result.isError()) {
        result.data.append(QJsonObject {{QStringLiteral("Name"), name}});
        result.config = obtained;
    }
    return result;
}

OperationResult GoogleClient::listing(
    const QMap<QString, QVariant>& config, const ListingRequest& request, const CancelToken& cancel)
{
    const QString bucket = config.value(OperationConfig::ContainerName).toString().trimmed();
    if (bucket.isEmpty())
        return OperationResult::failure(OperationError::InvalidConfig, QStringLiteral("No bucket is chosen"));
    QString prefix = request.prefix;
    while (prefix.startsWith(QLatin1Char('/')))
        prefix.remove(0, 1);
    QList<QPair<QString, QString>> query {{QStringLiteral("maxResults"),
        QString::number(request.maxKeys ? int(request.maxKeys) : ListingPager::DefaultMaxKeys)}};
    if (!prefix.isEmpty())
        query.append({QStringLiteral("prefix"), prefix});
    if (!request.delimiter.isEmpty())
        query.append({QStringLiteral("delimiter"), request.delimiter});
    if (!request.marker.isEmpty())
        query.append({QStringLiteral("pageToken"), request.marker});
    QMap<QString, QVariant> obtained = config;
    QJsonObject answer;
    OperationResult result = call(
        config, "GET", QStringLiteral("/storage/v1/b/%1/o").arg(bucket), query, {}, &answer, &obtained, cancel, bucket);
    if (result.isError())
        return result;
    const QJsonArray prefixes = answer.value(QStringLiteral("prefixes")).toArray();
    for (const QJsonValue& value : prefixes) {
        QString key = value.toString();
        if (!request.delimiter.isEmpty() && key.endsWith(request.delimiter))
            key.chop(request.delimiter.size());
        result.data.append(Api::ListingObject(key, true, 0, QDateTime()).json());
    }
    const QJsonArray items = answer.value(QStringLiteral("items")).toArray();
    for (const QJsonValue& value : items) {
        const QJsonObject item = value.toObject();
        result.data.append(Api::ListingObject(item.value(QStringLiteral("name")).toString(), false,
            item.value(QStringLiteral("size")).toString().toLongLong(),
            QDateTime::fromString(item.value(QStringLiteral("updated")).toString(), Qt::ISODateWithMs))
                               .json());
    }
    // The provider's page token is opaque; it is our marker as it is.
    result.marker = answer.value(QStringLiteral("nextPageToken")).toString();
    if (obtained != config)
        result.config = obtained;
    return result;
}

} // namespace NVL::Cloud
